// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/gate.h"

#include <boost/beast/core/string.hpp>

namespace varnel::http {

namespace beast = boost::beast;

namespace {

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& byte : lower) {
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return lower;
}

std::string_view withoutPort(std::string_view host) {
  const auto bracket = host.rfind(']');
  const auto colon = host.find(':', bracket == std::string_view::npos ? 0 : bracket);
  return host.substr(0, colon);
}

}  // namespace

void AllowedHosts::add(std::string_view host) {
  m_names.insert(lowerCase(host));
}

bool AllowedHosts::contains(std::string_view header) const {
  return m_names.contains(lowerCase(withoutPort(header)));
}

std::optional<Answer> refuseAtGate(const beast::http::fields& header, const AllowedHosts& hosts) {
  if (header.count(beast::http::field::host) != 1 || !hosts.contains(header[beast::http::field::host])) {
    return errorAnswer(421, "This bridge is not known under that name.");
  }
  if (header.count(beast::http::field::origin) != 0) {
    return errorAnswer(403, "Web pages may not talk to this bridge.");
  }
  return std::nullopt;
}

std::string_view bearerToken(const beast::http::fields& header) {
  constexpr std::string_view kScheme = "Bearer ";
  const std::string_view value = header[beast::http::field::authorization];
  if (value.size() < kScheme.size() || !beast::iequals(value.substr(0, kScheme.size()), kScheme)) return {};
  return value.substr(kScheme.size());
}

}  // namespace varnel::http
