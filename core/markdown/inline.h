// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::markdown {

struct InlineStyles {
  bool emphasis = false;
  bool strong = false;
  bool code = false;
  bool strikethrough = false;

  bool operator==(const InlineStyles&) const = default;
};

/// A piece of text that looks the same from end to end.
struct InlineRun {
  std::string text;  ///< as it is read: markers gone, escapes and entities resolved, never empty
  InlineStyles styles;
  /// Where a link leads, as its author wrote it: any scheme, relative, even empty. Shared by the runs of one link.
  std::shared_ptr<const std::string> link;

  bool operator==(const InlineRun& other) const;
};

/// Reads the inline markdown of a text: emphasis, strong, strikethrough, code spans, links, images (their alternative
/// text), autolinks in angle brackets, backslash escapes and entities, as CommonMark has them, and nothing of its block
/// syntax. White space and line ends stay as they are, HTML is literal text. Never fails: what is no markdown is text.
/// Neighbouring runs differ in their styles or their link. Takes time and space in proportion to the text.
std::vector<InlineRun> inlineMarkdown(std::string_view text);

}  // namespace varnel::markdown
