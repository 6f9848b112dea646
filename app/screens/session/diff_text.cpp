// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/diff_text.h"

#include "app/screens/session/markdown/rich_text.h"
#include "core/base/plain_sight.h"
#include "core/transcript/file_changes.h"

namespace varnel::screens {
namespace {

using transcript::DiffLine;

QString shown(std::string_view text) {
  return escaped(QString::fromStdString(base::inPlainSight(text)));
}

QString lineOf(const DiffLine& line) {
  switch (line.kind) {
    case DiffLine::Kind::Added:
      return QStringLiteral("<p class=\"added\">+") + shown(line.text);
    case DiffLine::Kind::Removed:
      return QStringLiteral("<p class=\"removed\">-") + shown(line.text);
    case DiffLine::Kind::Heading:
      return QStringLiteral("<p class=\"heading\">") + shown(line.text);
    case DiffLine::Kind::Context:
      break;
  }
  return QStringLiteral("<p>&nbsp;") + shown(line.text);
}

}  // namespace

QString diffText(const json::JSONValue& detail) {
  QString html;
  for (const auto& change : transcript::fileChanges(detail)) {
    const auto lines = transcript::diffLines(change);
    if (lines.empty()) continue;
    html += QStringLiteral("<p class=\"file\">") + shown(change.path) + QStringLiteral("</p>");
    for (const DiffLine& line : lines) html += lineOf(line) + QStringLiteral("</p>");
  }
  return html;
}

}  // namespace varnel::screens
