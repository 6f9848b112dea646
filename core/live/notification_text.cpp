// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/notification_text.h"

#include "core/base/text.h"

namespace varnel::live {
namespace {

bool turnsTextAround(char32_t c) {
  return c == 0x200E || c == 0x200F || c == 0x061C || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

bool isControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

}  // namespace

std::string oneLine(std::string_view text, std::size_t longest) {
  std::string line;
  std::size_t length = 0;
  bool isGap = false;
  while (!text.empty()) {
    const auto [value, bytes] = base::firstCodePoint(text);
    const std::string_view character = text.substr(0, bytes);
    text.remove_prefix(bytes);
    if (base::isWhiteSpace(value) || isControl(value)) {
      isGap = !line.empty();
    } else if (!turnsTextAround(value)) {
      length += isGap ? 2 : 1;
      if (length > longest) return line + "…";
      line.append(isGap ? " " : "").append(character);
      isGap = false;
    }
  }
  return line;
}

}  // namespace varnel::live
