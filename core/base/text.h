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

inline bool isAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}
/// Space, tab and the other Unicode space separators (category Zs): what `trim` removes. Line ends are none.
inline bool isHorizontalSpace(char32_t c) {
  return c == U' ' || c == U'\t' || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x202F ||
         c == 0x205F || c == 0x3000;
}
/// Everything with the Unicode property White_Space, line ends included.
inline bool isWhiteSpace(char32_t c) {
  return isHorizontalSpace(c) || (c >= U'\n' && c <= U'\r') || c == 0x85 || c == 0x2028 || c == 0x2029;
}
/// Punctuation and symbols (categories P and S).
bool isPunctuation(char32_t c);

/// Without horizontal space at both ends, code point by code point.
std::string_view trimUnicode(std::string_view text);
/// The same, and quick where no character beyond ASCII stands at an end.
inline std::string_view trim(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  const bool done = text.empty() || (isAscii(text.front()) && isAscii(text.back()));
  return done ? text : trimUnicode(text);
}

/// Without white space at both ends, line ends included.
std::string_view trimLines(std::string_view text);

/// The first user-perceived character (extended grapheme cluster) of a text that is not empty.
std::string_view firstCharacter(std::string_view text);

/// Whether the ASCII character at `at` is a user-perceived character by itself, not the base of a combining mark and
/// not joined to a prepended sign before it.
bool standsAloneUnicode(std::string_view text, std::size_t at);
/// The same, and quick where no character beyond ASCII stands beside it.
inline bool standsAlone(std::string_view text, std::size_t at) {
  const bool before = at == 0 || isAscii(text[at - 1]);
  const bool after = at + 1 >= text.size() || isAscii(text[at + 1]);
  return (before && after) || standsAloneUnicode(text, at);
}

}  // namespace varnel::base
