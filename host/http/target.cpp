// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/target.h"

#include <algorithm>

#include "core/base/percent_encoding.h"
#include "core/json/text.h"

namespace varnel::http {

namespace {

std::optional<std::string> decoded(std::string_view text) {
  auto plain = base::percentDecode(text);
  if (!plain || !json::write(json::JSONValue(*plain))) return std::nullopt;
  return plain;
}

template <class Take>
bool splitInto(std::string_view text, char separator, Take take) {
  for (;;) {
    const auto end = text.find(separator);
    if (!take(text.substr(0, end))) return false;
    if (end == std::string_view::npos) return true;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

std::optional<std::string> Target::value(std::string_view name) const {
  const auto found = std::ranges::find(query, name, &std::pair<std::string, std::string>::first);
  if (found == query.end()) return std::nullopt;
  return found->second;
}

std::optional<Target> parseTarget(std::string_view text) {
  if (!text.starts_with('/')) return std::nullopt;
  Target target;
  const auto mark = text.find('?');
  const auto addSegment = [&](std::string_view segment) {
    auto plain = decoded(segment);
    if (plain) target.segments.push_back(std::move(*plain));
    return plain.has_value();
  };
  if (!splitInto(text.substr(1, mark == std::string_view::npos ? mark : mark - 1), '/', addSegment)) {
    return std::nullopt;
  }
  const auto addItem = [&](std::string_view item) {
    const auto equals = item.find('=');
    auto name = decoded(item.substr(0, equals));
    auto value = decoded(equals == std::string_view::npos ? "" : item.substr(equals + 1));
    if (name && value && !item.empty()) target.query.emplace_back(std::move(*name), std::move(*value));
    return name && value;
  };
  if (mark != std::string_view::npos && !splitInto(text.substr(mark + 1), '&', addItem)) return std::nullopt;
  return target;
}

}  // namespace varnel::http
