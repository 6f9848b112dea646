// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text as people see it. All texts are UTF-8; a byte that is none is taken for a character of its own.
namespace varnel::base {

/// A code point and the bytes it takes.
struct CodePoint {
  char32_t value = 0;
  std::size_t length = 0;
};
/// The code point at the start of a text that is not empty.
CodePoint firstCodePoint(std::string_view text);
/// The code point at the end of a text that is not empty.
CodePoint lastCodePoint(std::string_view text);
/// U+FFFD in place of what is no character.
std::string utf8(char32_t c);

/// Space, tab and the other Unicode space separators (category Zs): what `trim` removes. Line ends are none.
bool isHorizontalSpace(char32_t c);
/// Everything with the Unicode property White_Space, line ends included.
bool isWhiteSpace(char32_t c);
/// Punctuation and symbols (categories P and S).
bool isPunctuation(char32_t c);

/// Without horizontal space at both ends, code point by code point.
std::string_view trim(std::string_view text);

/// Without white space at both ends, line ends included.
std::string_view trimLines(std::string_view text);

/// The first user-perceived character (extended grapheme cluster) of a text that is not empty.
std::string_view firstCharacter(std::string_view text);

/// Whether the ASCII character at `at` is a user-perceived character by itself, not the base of a combining mark and
/// not joined to a prepended sign before it.
bool standsAlone(std::string_view text, std::size_t at);

}  // namespace varnel::base
