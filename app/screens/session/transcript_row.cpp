// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/transcript_row.h"

#include <boost/describe/class.hpp>

#include "app/lists/record_roles.h"
#include "app/screens/session/capitalised.h"
#include "app/screens/session/diff_text.h"
#include "core/transcript/display_rows.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(ToolEntry, (), (title, status, diff, detail))
BOOST_DESCRIBE_STRUCT(TranscriptRow, (), (rowId, kind, fromUser, text, expanded, entries))

namespace {

using transcript::TranscriptDisplayRow;

QString titleOf(const wire::TranscriptItem& item) {
  if (item.title) return QString::fromStdString(*item.title);
  QString type = QString::fromStdString(item.type);
  type.replace(QLatin1String("Execution"), QLatin1String(" execution"));
  type.replace(QLatin1String("Change"), QLatin1String(" change"));
  return capitalised(type);
}

QString statusOf(const wire::TranscriptItem& item) {
  return capitalised(QString::fromStdString(item.status.value_or("")).replace(QLatin1Char('_'), QLatin1Char(' ')));
}

QString labelOf(const std::vector<wire::TranscriptItem>& items) {
  if (items.size() == 1) return titleOf(items.front());
  return QString::number(items.size()) + QStringLiteral(" tool activities");
}

ToolEntry entryOf(const wire::TranscriptItem& item) {
  ToolEntry entry{.title = titleOf(item), .status = statusOf(item), .diff = {}, .detail = {}};
  if (item.detail) {
    const json::JSONValue detail = item.detail->value();
    entry.diff = diffText(detail);
    entry.detail = QString::fromStdString(detail.prettyPrinted());
  }
  return entry;
}

TranscriptRow messageRow(const wire::TranscriptItem& item) {
  return {.rowId = item.id, .kind = "message", .fromUser = item.role == "user", .text = item.text.value_or("")};
}

TranscriptRow toolsRow(const TranscriptDisplayRow& shown, const RowIDs& expanded) {
  TranscriptRow row{.rowId = shown.id(), .kind = "tools", .text = labelOf(shown.items).toStdString()};
  row.expanded = expanded.contains(row.rowId);
  if (row.expanded) {
    for (const wire::TranscriptItem& item : shown.items) row.entries.push_back(entryOf(item));
  }
  return row;
}

}  // namespace

std::vector<TranscriptRow> makeTranscriptRows(const std::vector<wire::TranscriptItem>& items, const RowIDs& expanded) {
  std::vector<TranscriptRow> rows;
  for (const TranscriptDisplayRow& shown : transcript::transcriptDisplayRows(items)) {
    const bool message = shown.kind == TranscriptDisplayRow::Kind::Message;
    rows.push_back(message ? messageRow(shown.items.front()) : toolsRow(shown, expanded));
  }
  return rows;
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::TranscriptRow>>&
varnel::lists::rolesOf<varnel::screens::TranscriptRow>();
