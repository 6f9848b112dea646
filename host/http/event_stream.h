// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/message.hpp>
#include <optional>

#include "host/http/answer.h"
#include "host/http/limits.h"
#include "host/http/target.h"
#include "host/store/devices.h"

namespace varnel::service {
class Bridge;
}

namespace varnel::http {

/// A request for the event stream whose token is known already.
struct EventStreamRequest {
  boost::asio::ip::tcp::socket& socket;
  service::Bridge& bridge;
  const Limits& limits;
  std::string deviceId;
  Target target;
  boost::beast::http::request<boost::beast::http::empty_body> request;
};

/// Upgrades the connection and sends events until either side ends it; the socket is used up then. An answer when it
/// is not upgraded.
boost::asio::awaitable<std::optional<Answer>> serveEventStream(EventStreamRequest request);

}  // namespace varnel::http
