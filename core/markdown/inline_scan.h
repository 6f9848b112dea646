// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What can stand in a line of text, one function a construct. A length is that of the construct at the start of the
/// text, 0 when there is none.
namespace varnel::markdown {

/// Whether a backslash before it makes the character literal.
bool isEscapable(char c);

/// "<https://example.org>", without the brackets' meaning.
std::size_t uriAutolinkLength(std::string_view text);
std::size_t emailAutolinkLength(std::string_view text);

/// A character written by name or number: "&amp;", "&#38;", "&#x26;".
struct CharacterReference {
  std::size_t length = 0;
  std::string text;
};
std::optional<CharacterReference> characterReference(std::string_view text);

/// A text with its backslash escapes and character references resolved.
std::string resolved(std::string_view text);

/// "(destination "title")", as it follows the text of a link.
struct LinkTarget {
  std::size_t length = 0;
  std::string_view destination;  ///< not yet resolved
};
std::optional<LinkTarget> linkTarget(std::string_view text);

/// Finds HTML in a text whose places are asked for in ascending order; all searches together look at the text a bounded
/// number of times.
class HtmlScanner {
 public:
  explicit HtmlScanner(std::string_view text) : m_text(text) {}

  /// The length of the tag, comment, instruction, declaration or CDATA section at the "<" at `at`.
  std::size_t length(std::size_t at);

 private:
  std::size_t lengthUpTo(std::size_t terminator, std::size_t at, std::size_t from);

  std::string_view m_text;
  std::array<std::optional<std::size_t>, 4> m_found;  ///< by terminator, where it stands next; npos when nowhere
};

/// Finds the ends of code spans.
class BacktickRuns {
 public:
  explicit BacktickRuns(std::string_view text);

  /// Where the next run of exactly `length` backticks begins at or after `from`.
  [[nodiscard]] std::optional<std::size_t> find(std::size_t length, std::size_t from) const;

 private:
  std::vector<std::pair<std::size_t, std::size_t>> m_runs;  ///< length and place, sorted
};

}  // namespace varnel::markdown
