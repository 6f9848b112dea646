// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/excerpt.h"

#include <array>
#include <charconv>

#include "core/base/text.h"

namespace varnel::json {

namespace {

bool isPlain(char32_t c) {
  return c >= 0x20 && c < 0x7F && c != U'"' && c != U'\\';
}

void appendEscaped(std::string& out, char32_t c) {
  if (c == U'"' || c == U'\\') {
    out.append(1, '\\').append(1, static_cast<char>(c));
    return;
  }
  std::array<char, 8> digits{};
  const auto [end, fault] = std::to_chars(digits.begin(), digits.end(), static_cast<std::uint32_t>(c), 16);
  out.append("\\u{").append(digits.data(), end).append("}");
}

}  // namespace

std::string excerpt(std::string_view text) {
  constexpr int kMostCharacters = 40;
  std::string out = "\"";
  for (int shown = 0; !text.empty(); ++shown) {
    if (shown == kMostCharacters) return out + "\"…";
    const base::CodePoint next = base::firstCodePoint(text);
    if (isPlain(next.value)) {
      out.push_back(text.front());
    } else {
      appendEscaped(out, next.value);
    }
    text.remove_prefix(next.length);
  }
  return out + "\"";
}

}  // namespace varnel::json
