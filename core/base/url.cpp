// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/base/url.h"

#include <algorithm>

#include "core/base/percent_encoding.h"

namespace varnel::base {

namespace {

bool mayStandInUrl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte > 0x20 && byte != 0x7F && !std::string_view("\"<>\\^`{|}").contains(c);
}

bool isSchemeText(std::string_view text) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return !text.empty() && isLetter(text.front()) && std::ranges::all_of(text, [&](char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
  });
}

/// Cuts `text` at the first of `mark` and gives what stood behind it.
std::optional<std::string_view> cutAt(std::string_view& text, char mark) {
  const auto at = text.find(mark);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view behind = text.substr(at + 1);
  text = text.substr(0, at);
  return behind;
}

}  // namespace

std::optional<Url> Url::parse(std::string_view text) {
  if (text.empty() || !std::ranges::all_of(text, mayStandInUrl) || !percentDecode(text)) return std::nullopt;
  return Url(std::string(text));
}

Url::Parts Url::parts() const {
  Parts parts;
  std::string_view rest = m_text;
  parts.fragment = cutAt(rest, '#');
  parts.query = cutAt(rest, '?');
  if (const auto colon = rest.find(':'); colon != std::string_view::npos && isSchemeText(rest.substr(0, colon))) {
    parts.scheme = rest.substr(0, colon);
    rest.remove_prefix(colon + 1);
  }
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    const auto slash = std::min(rest.find('/'), rest.size());
    parts.authority = rest.substr(0, slash);
    rest.remove_prefix(slash);
  }
  parts.path = rest;
  return parts;
}

}  // namespace varnel::base
