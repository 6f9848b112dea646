// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/markdown/rich_text.h"

#include "core/markdown/inline.h"

namespace varnel::screens {
namespace {

QString styleOf(const markdown::InlineRun& run, const RichTextLook& look) {
  QString style;
  if (run.styles.emphasis) style += QLatin1String("font-style:italic;");
  if (run.styles.strong) style += QLatin1String("font-weight:700;");
  if (run.styles.strikethrough) style += QLatin1String("text-decoration:line-through;");
  if (run.styles.code) {
    style += QStringLiteral("font-family:'%1';background-color:%2;").arg(look.codeFamily, look.codeBackground);
  }
  return style;
}

QString htmlOf(const markdown::InlineRun& run, const RichTextLook& look) {
  QString html = escaped(QString::fromStdString(run.text));
  if (const QString style = styleOf(run, look); !style.isEmpty()) {
    html = QStringLiteral("<span style=\"") + style + QStringLiteral("\">") + html + QStringLiteral("</span>");
  }
  if (run.link) {
    const QString address = QString::fromStdString(*run.link).toHtmlEscaped();
    html = QStringLiteral("<a style=\"color:") + look.linkColor + QStringLiteral("\" href=\"") + address +
           QStringLiteral("\">") + html + QStringLiteral("</a>");
  }
  return html;
}

}  // namespace

QString escaped(const QString& text) {
  QString result = text.toHtmlEscaped();
  // The sign that stands for an object in a rich text: there is none here.
  result.replace(QChar::ObjectReplacementCharacter, QChar::ReplacementCharacter);
  result.replace(QLatin1Char('\n'), QLatin1String("<br/>"));
  return result;
}

StyledText styledText(std::string_view markdownText, const RichTextLook& look) {
  StyledText result;
  for (const markdown::InlineRun& run : markdown::inlineMarkdown(markdownText)) {
    result.plain += QString::fromStdString(run.text);
    result.html += htmlOf(run, look);
  }
  return result;
}

QString paragraph(const QString& html, const RichTextLook& look) {
  return QStringLiteral("<p style=\"margin:0;white-space:pre-wrap;line-height:") + QString::number(look.lineHeight) +
         QStringLiteral("%\">") + html + QStringLiteral("</p>");
}

}  // namespace varnel::screens
