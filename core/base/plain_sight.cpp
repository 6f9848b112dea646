// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/base/plain_sight.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>

#include "core/base/text.h"

namespace varnel::base {
namespace {

/// Letters and symbols by their category that are drawn as nothing at all.
constexpr auto kInvisible = std::to_array<char32_t>({0x034F, 0x115F, 0x1160, 0x17B4, 0x17B5, 0x2800, 0x3164, 0xFFA0});

bool isVariationSelector(char32_t c) {
  return (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0x180B && c <= 0x180F) || (c >= 0xE0100 && c <= 0xE01EF);
}

bool deceives(char32_t c) {
  if (c == U'\n' || c == U'\t' || c == U' ') return false;
  if (c < 0x7F) return c < 0x20;
  if (std::ranges::find(kInvisible, c) != kInvisible.end() || isVariationSelector(c)) return true;
  switch (utf8proc_category(static_cast<utf8proc_int32_t>(c))) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_CN:
    case UTF8PROC_CATEGORY_CO:
    case UTF8PROC_CATEGORY_CS:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
    case UTF8PROC_CATEGORY_ZS:
      return true;
    default:
      return false;
  }
}

void appendEscape(std::string& result, char kind, char32_t value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string digits;
  for (; value > 0 || digits.size() < 2; value >>= 4) digits.insert(digits.begin(), kDigits[value & 0xF]);
  result.append("\\").append(1, kind).append("{").append(digits).append("}");
}

/// Whether a code point of this many bytes is written with this first byte; a stray byte is none.
bool isWellFormed(std::string_view text, CodePoint point) {
  return point.length > 1 || static_cast<unsigned char>(text.front()) < 0x80;
}

}  // namespace

std::string inPlainSight(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const CodePoint point = firstCodePoint(text);
    if (!isWellFormed(text, point)) {
      appendEscape(result, 'x', static_cast<unsigned char>(text.front()));
    } else if (deceives(point.value)) {
      appendEscape(result, 'u', point.value);
    } else {
      result.append(text.substr(0, point.length));
    }
    text.remove_prefix(point.length);
  }
  return result;
}

}  // namespace varnel::base
