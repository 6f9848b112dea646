// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/base/percent_encoding.h"

namespace varnel::base {

namespace {

bool isAlphanumeric(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isKept(char c, UrlSet set) {
  if (isAlphanumeric(c) || std::string_view("-._~").contains(c)) return true;
  if (set == UrlSet::Unreserved) return false;
  return std::string_view("!$&'()*+,;=:@/").contains(c) || (set == UrlSet::Query && c == '?');
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// The byte that a "%XX" at this place stands for, or -1.
int encodedByte(std::string_view text, std::size_t at) {
  if (at + 2 >= text.size() || text[at] != '%') return -1;
  const int high = hexDigit(text[at + 1]);
  const int low = hexDigit(text[at + 2]);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

void appendEncoded(std::string& out, char c) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  out.push_back('%');
  out.push_back(kDigits[byte >> 4U]);
  out.push_back(kDigits[byte & 0xFU]);
}

}  // namespace

std::string percentEncode(std::string_view text, UrlSet set) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    if (isKept(c, set)) {
      out.push_back(c);
    } else {
      appendEncoded(out, c);
    }
  }
  return out;
}

std::string percentEncodeMissing(std::string_view text, UrlSet set) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isKept(text[i], set) || encodedByte(text, i) >= 0) {
      out.push_back(text[i]);
    } else {
      appendEncoded(out, text[i]);
    }
  }
  return out;
}

std::optional<std::string> percentDecode(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      out.push_back(text[i]);
      continue;
    }
    const int byte = encodedByte(text, i);
    if (byte < 0) return std::nullopt;
    out.push_back(static_cast<char>(byte));
    i += 2;
  }
  return out;
}

}  // namespace varnel::base
