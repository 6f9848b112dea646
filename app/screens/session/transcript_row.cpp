// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/transcript_row.h"

#include <QtCore/QCoreApplication>
#include <boost/describe/class.hpp>

#include "app/lists/record_roles.h"
#include "core/transcript/display_rows.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(TranscriptRow, (), (itemId, message, fromUser, author, text, status, spoken))
BOOST_DESCRIBE_STRUCT(RequestNotice, (), (requestId, method))

namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("TranscriptRow", text);
}

QString capitalisedWords(const QString& text) {
  QString result = text.toLower();
  bool atStart = true;
  for (QChar& each : result) {
    if (atStart) each = each.toUpper();
    atStart = each.isSpace();
  }
  return result;
}

QString toolTitle(const wire::TranscriptItem& item) {
  if (item.title) return QString::fromStdString(*item.title);
  QString type = QString::fromStdString(item.type);
  type.replace(QLatin1String("Execution"), QLatin1String(" execution"));
  type.replace(QLatin1String("Change"), QLatin1String(" change"));
  return capitalisedWords(type);
}

QString statusWord(const wire::TranscriptItem& item) {
  return capitalisedWords(QString::fromStdString(item.status.value_or("")).replace(QLatin1Char('_'), QLatin1Char(' ')));
}

TranscriptRow messageRow(const wire::TranscriptItem& item) {
  const bool fromUser = item.role == "user";
  TranscriptRow row{.itemId = QString::fromStdString(item.id),
                    .message = true,
                    .fromUser = fromUser,
                    .author = fromUser ? tr("You") : tr("Codex"),
                    .text = QString::fromStdString(item.text.value_or("")),
                    .status = {},
                    .spoken = {}};
  row.spoken = row.text.isEmpty() ? row.author : row.author + QLatin1String(": ") + row.text;
  return row;
}

TranscriptRow toolRow(const wire::TranscriptItem& item) {
  TranscriptRow row{.itemId = QString::fromStdString(item.id),
                    .message = false,
                    .fromUser = false,
                    .author = {},
                    .text = toolTitle(item).simplified(),
                    .status = statusWord(item),
                    .spoken = {}};
  row.spoken = row.status.isEmpty() ? row.text : row.text + QLatin1String(", ") + row.status;
  return row;
}

}  // namespace

std::vector<TranscriptRow> makeTranscriptRows(const std::vector<wire::TranscriptItem>& items) {
  std::vector<TranscriptRow> rows;
  rows.reserve(items.size());
  for (const transcript::TranscriptDisplayRow& shown : transcript::transcriptDisplayRows(items)) {
    const bool message = shown.kind == transcript::TranscriptDisplayRow::Kind::Message;
    for (const wire::TranscriptItem& item : shown.items) rows.push_back(message ? messageRow(item) : toolRow(item));
  }
  return rows;
}

std::vector<RequestNotice> makeRequestNotices(const std::vector<wire::PendingRequest>& requests) {
  std::vector<RequestNotice> notices;
  for (const wire::PendingRequest& request : requests) {
    if (request.resolved) continue;
    notices.push_back({.requestId = QString::fromStdString(request.id),
                       .method = QString::fromStdString(request.method).remove(QLatin1String("item/"))});
  }
  return notices;
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::TranscriptRow>>&
varnel::lists::rolesOf<varnel::screens::TranscriptRow>();
template const std::vector<varnel::lists::Role<varnel::screens::RequestNotice>>&
varnel::lists::rolesOf<varnel::screens::RequestNotice>();
