// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/link.h"

#include "core/base/percent_encoding.h"
#include "core/base/url.h"

namespace varnel::live {
namespace {

/// Without user name and port.
std::string_view hostOf(std::string_view authority) {
  if (const auto at = authority.rfind('@'); at != std::string_view::npos) authority.remove_prefix(at + 1);
  return authority.substr(0, authority.find(':'));
}

/// The first segment that is not empty.
std::string_view firstSegment(std::string_view path) {
  const auto begin = path.find_first_not_of('/');
  if (begin == std::string_view::npos) return {};
  path.remove_prefix(begin);
  return path.substr(0, path.find('/'));
}

}  // namespace

std::optional<Link> parseLink(std::string_view url) {
  const auto parsed = base::Url::parse(url);
  if (!parsed) return std::nullopt;
  const auto parts = parsed->parts();
  if (parts.scheme != "varnel" || !parts.authority || hostOf(*parts.authority) != "session") return std::nullopt;
  const auto segment = firstSegment(parts.path);
  if (segment.empty()) return Link{};
  return Link{.sessionId = base::percentDecode(segment).value_or(std::string(segment))};
}

}  // namespace varnel::live
