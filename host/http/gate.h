// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/beast/http/fields.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "host/http/answer.h"
#include "host/http/target.h"

namespace varnel::http {

/// The names under which the bridge may be addressed: a page on the web that was made to resolve to this host comes
/// with another one. Ports are not compared, so that a forwarded port works.
class AllowedHosts {
 public:
  AllowedHosts() : m_names{"127.0.0.1", "localhost", "[::1]"} {}
  void add(std::string_view host);
  /// `header` may carry a port.
  [[nodiscard]] bool contains(std::string_view header) const;

 private:
  std::set<std::string> m_names;
};

/// Refuses what no phone sends: an unknown or missing Host, and any Origin, which only browsers set.
std::optional<Answer> refuseAtGate(const boost::beast::http::fields& header, const AllowedHosts& hosts);

/// The token that a request carries: as a bearer, or for the event stream in the query.
std::string_view bearerToken(const boost::beast::http::fields& header);

}  // namespace varnel::http
