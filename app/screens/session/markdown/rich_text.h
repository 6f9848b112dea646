// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <string_view>

namespace varnel::screens {

/// What the words of a message look like where the text itself does not say. Colours and families as style sheets
/// write them.
struct RichTextLook {
  QString linkColor;
  QString codeBackground;
  QString codeFamily;
  QString hairline;
  int lineHeight = 100;  ///< percent of the font's own

  bool operator==(const RichTextLook&) const = default;
};

/// Inline markdown in both forms a text item needs. `html` is made here out of escaped text alone: nothing of the
/// agent's own markup gets through, and it names no picture and no address to fetch.
struct StyledText {
  QString html;
  QString plain;  ///< what is read aloud

  bool operator==(const StyledText&) const = default;
};
StyledText styledText(std::string_view markdownText, const RichTextLook& look);

/// One paragraph around what `styledText` gave, keeping every blank.
QString paragraph(const QString& html, const RichTextLook& look);

/// Plain text as it has to stand in HTML, line ends as line breaks.
QString escaped(const QString& text);

}  // namespace varnel::screens
