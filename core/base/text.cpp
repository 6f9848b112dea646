// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/base/text.h"

#include <utf8proc.h>

#include <array>

namespace varnel::base {

namespace {

const utf8proc_uint8_t* bytesOf(std::string_view text) {
  return reinterpret_cast<const utf8proc_uint8_t*>(text.data());
}

template <class IsSpace>
std::string_view trimWhere(std::string_view text, IsSpace isSpace) {
  while (!text.empty()) {
    const CodePoint first = firstCodePoint(text);
    if (!isSpace(first.value)) break;
    text.remove_prefix(first.length);
  }
  while (!text.empty()) {
    const CodePoint last = isAscii(text.back()) ? firstCodePoint(text.substr(text.size() - 1)) : lastCodePoint(text);
    if (!isSpace(last.value)) break;
    text.remove_suffix(last.length);
  }
  return text;
}

}  // namespace

CodePoint firstCodePoint(std::string_view text) {
  if (isAscii(text.front())) return {.value = static_cast<unsigned char>(text.front()), .length = 1};
  utf8proc_int32_t value = 0;
  const auto length = utf8proc_iterate(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &value);
  if (length <= 0) return {.value = U'\uFFFD', .length = 1};
  return {.value = static_cast<char32_t>(value), .length = static_cast<std::size_t>(length)};
}

CodePoint lastCodePoint(std::string_view text) {
  constexpr std::size_t kLongest = 4;
  std::size_t start = text.size() - 1;
  while (start > 0 && text.size() - start < kLongest && (static_cast<unsigned char>(text[start]) & 0xC0U) == 0x80)
    --start;
  const CodePoint found = firstCodePoint(text.substr(start));
  if (start + found.length == text.size()) return found;
  return {.value = static_cast<unsigned char>(text.back()), .length = 1};
}

std::string utf8(char32_t c) {
  constexpr char32_t kReplacement = U'\uFFFD';
  if (!utf8proc_codepoint_valid(static_cast<utf8proc_int32_t>(c))) c = kReplacement;
  std::array<utf8proc_uint8_t, 4> bytes{};
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(c), bytes.data());
  return {bytes.begin(), bytes.begin() + length};
}

bool isPunctuation(char32_t c) {
  if (c < 0x80) return (c > 0x20 && c < '0') || (c > '9' && c < 'A') || (c > 'Z' && c < 'a') || (c > 'z' && c < 0x7F);
  const auto category = utf8proc_category(static_cast<utf8proc_int32_t>(c));
  return category >= UTF8PROC_CATEGORY_PC && category <= UTF8PROC_CATEGORY_SO;
}

namespace {

/// How many bytes of horizontal space two or three bytes are, 0 when they are none.
std::size_t spaceLength(std::string_view bytes) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[i])); };
  if (bytes.size() == 2) return at(0) == 0xC2 && at(1) == 0xA0 ? 2 : 0;
  const bool three = at(0) > 0xE0 && at(0) < 0xF0 && (at(1) & 0xC0U) == 0x80 && (at(2) & 0xC0U) == 0x80;
  const char32_t value = ((at(0) & 0x0FU) << 12U) | ((at(1) & 0x3FU) << 6U) | (at(2) & 0x3FU);
  return three && isHorizontalSpace(value) ? 3 : 0;
}

std::size_t leadingSpace(std::string_view text) {
  if (text.front() == ' ' || text.front() == '\t') return 1;
  if (isAscii(text.front()) || text.size() < 2) return 0;
  const std::size_t two = spaceLength(text.substr(0, 2));
  return two > 0 || text.size() == 2 ? two : spaceLength(text.substr(0, 3));
}

std::size_t trailingSpace(std::string_view text) {
  if (text.back() == ' ' || text.back() == '\t') return 1;
  if (isAscii(text.back()) || text.size() < 2) return 0;
  const std::size_t two = spaceLength(text.substr(text.size() - 2));
  return two > 0 || text.size() == 2 ? two : spaceLength(text.substr(text.size() - 3));
}

}  // namespace

std::string_view trimUnicode(std::string_view text) {
  for (std::size_t space = 1; space > 0 && !text.empty();) {
    space = leadingSpace(text);
    text.remove_prefix(space);
  }
  for (std::size_t space = 1; space > 0 && !text.empty();) {
    space = trailingSpace(text);
    text.remove_suffix(space);
  }
  return text;
}

std::string_view trimLines(std::string_view text) {
  return trimWhere(text, isWhiteSpace);
}

std::string_view firstCharacter(std::string_view text) {
  // Of two ASCII characters only CR LF belong together.
  if (isAscii(text[0]) && (text.size() == 1 || (isAscii(text[1]) && text[1] != '\n'))) return text.substr(0, 1);
  CodePoint previous = firstCodePoint(text);
  std::size_t end = previous.length;
  utf8proc_int32_t state = 0;
  while (end < text.size()) {
    const CodePoint next = firstCodePoint(text.substr(end));
    if (utf8proc_grapheme_break_stateful(static_cast<utf8proc_int32_t>(previous.value),
                                         static_cast<utf8proc_int32_t>(next.value), &state)) {
      break;
    }
    end += next.length;
    previous = next;
  }
  return text.substr(0, end);
}

bool standsAloneUnicode(std::string_view text, std::size_t at) {
  const auto self = static_cast<utf8proc_int32_t>(static_cast<unsigned char>(text[at]));
  const auto breaks = [](utf8proc_int32_t a, utf8proc_int32_t b) { return utf8proc_grapheme_break(a, b); };
  if (at + 1 < text.size() && !isAscii(text[at + 1]) &&
      !breaks(self, static_cast<utf8proc_int32_t>(firstCodePoint(text.substr(at + 1)).value))) {
    return false;
  }
  return at == 0 || isAscii(text[at - 1]) ||
         breaks(static_cast<utf8proc_int32_t>(lastCodePoint(text.substr(0, at)).value), self);
}

}  // namespace varnel::base
