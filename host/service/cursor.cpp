// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/cursor.h"

#include <charconv>

#include "host/store/digest.h"

namespace varnel::service {

namespace {

constexpr std::string_view kDigits = "0123456789abcdef";
/// Enough of a digest to tell a cursor that was cut, typed or taken from another list.
constexpr std::size_t kMarkSize = 8;

std::string hex(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    text += kDigits[static_cast<unsigned char>(byte) >> 4U];
    text += kDigits[static_cast<unsigned char>(byte) & 15U];
  }
  return text;
}

std::optional<std::string> unhex(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const auto high = kDigits.find(text[i]);
    const auto low = kDigits.find(text[i + 1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
    bytes += static_cast<char>(high << 4U | low);
  }
  return bytes;
}

std::string markOf(std::string_view scope, std::string_view content) {
  const auto digest = store::DigestBuilder().add(scope).add(std::string_view("\0", 1)).add(content).finish();
  return std::string(store::bytesOf(digest).substr(0, kMarkSize));
}

}  // namespace

std::string writeCursor(std::string_view scope, const Cursor& cursor) {
  std::array<char, 32> number{};
  const auto written = std::to_chars(number.data(), number.data() + number.size(), cursor.updatedAt);
  const std::string content = std::string(number.data(), written.ptr) + " " + cursor.id;
  return hex(markOf(scope, content) + content);
}

std::optional<Cursor> readCursor(std::string_view scope, std::string_view text) {
  const auto bytes = unhex(text);
  if (!bytes || bytes->size() < kMarkSize) return std::nullopt;
  const std::string_view content = std::string_view(*bytes).substr(kMarkSize);
  if (markOf(scope, content) != bytes->substr(0, kMarkSize)) return std::nullopt;
  Cursor cursor;
  const auto space = content.find(' ');
  if (space == std::string_view::npos) return std::nullopt;
  const auto read = std::from_chars(content.data(), content.data() + space, cursor.updatedAt);
  if (read.ec != std::errc() || read.ptr != content.data() + space) return std::nullopt;
  cursor.id = content.substr(space + 1);
  return cursor;
}

}  // namespace varnel::service
