// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/awaitable.hpp>
#include <boost/beast/http/verb.hpp>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/http/target.h"
#include "host/service/failure.h"

namespace varnel::service {
class Bridge;
}

namespace varnel::http {

/// A request as its handler sees it: let in, read in full, not yet understood.
struct Call {
  service::Bridge& bridge;
  Target target;
  std::vector<std::string> ids;  ///< what stands in the path for each "{}"
  std::string body;
  std::string key;  ///< the same for a repeated attempt
};

/// JSON text, or why not.
using Handler = service::Task<std::string> (*)(Call);

struct Route {
  enum class Kind {
    Json,         ///< handled by `handler`, body read into memory
    Upload,       ///< the body is a file
    EventStream,  ///< upgraded to a WebSocket
  };
  boost::beast::http::verb verb;
  std::string_view path;
  Handler handler = nullptr;
  Kind kind = Kind::Json;
  bool needsToken = true;
};

struct RouteMatch {
  const Route* route;
  std::vector<std::string> ids;
};
/// The path exists, the verb does not.
struct WrongVerb {
  std::string allow;
};
struct NoRoute {};

std::variant<NoRoute, WrongVerb, RouteMatch> findRoute(boost::beast::http::verb verb, const Target& target);

}  // namespace varnel::http
