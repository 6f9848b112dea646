// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/routes.h"

#include <array>
#include <optional>

#include "host/http/handlers.h"

namespace varnel::http {

namespace {

using enum boost::beast::http::verb;
namespace h = handlers;

/// Every path of the bridge. A literal segment stands before a "{}" that would match it too.
constexpr std::array kRoutes{
    Route{.verb = post, .path = "/v1/pair/claim", .handler = h::claim, .needsToken = false},
    Route{.verb = get, .path = "/v1/events", .kind = Route::Kind::EventStream},
    Route{.verb = get, .path = "/v1/sessions", .handler = h::listSessions},
    Route{.verb = post, .path = "/v1/sessions", .handler = h::createSession},
    Route{.verb = get, .path = "/v1/sessions/archived", .handler = h::listArchived},
    Route{.verb = get, .path = "/v1/sessions/{}", .handler = h::showSession},
    Route{.verb = post, .path = "/v1/sessions/{}/messages", .handler = h::sendMessage},
    Route{.verb = post, .path = "/v1/sessions/{}/queue", .handler = h::queueMessage},
    Route{.verb = delete_, .path = "/v1/sessions/{}/queue", .handler = h::unqueue},
    Route{.verb = post, .path = "/v1/sessions/{}/goal", .handler = h::startGoal},
    Route{.verb = post, .path = "/v1/sessions/{}/settings", .handler = h::updateSettings},
    Route{.verb = post, .path = "/v1/sessions/{}/interrupt", .handler = h::interrupt},
    Route{.verb = post, .path = "/v1/sessions/{}/name", .handler = h::rename},
    Route{.verb = post, .path = "/v1/sessions/{}/archive", .handler = h::archive},
    Route{.verb = post, .path = "/v1/sessions/{}/unarchive", .handler = h::unarchive},
    Route{.verb = post, .path = "/v1/sessions/{}/uploads", .kind = Route::Kind::Upload},
    Route{.verb = get, .path = "/v1/projects", .handler = h::listProjects},
    Route{.verb = get, .path = "/v1/models", .handler = h::listModels},
    Route{.verb = get, .path = "/v1/rate-limit", .handler = h::showRateLimit},
    Route{.verb = get, .path = "/v1/usage", .handler = h::showUsage},
    Route{.verb = get, .path = "/v1/search", .handler = h::search},
    Route{.verb = post, .path = "/v1/requests/{}/resolve", .handler = h::resolve},
    Route{.verb = post, .path = "/v1/tracking", .handler = h::track},
};

/// What stands for each "{}", or nothing when the path is another one.
std::optional<std::vector<std::string>> matchPath(std::string_view pattern, const Target& target) {
  std::vector<std::string> ids;
  for (const auto& segment : target.segments) {
    if (!pattern.starts_with('/')) return std::nullopt;
    pattern.remove_prefix(1);
    const auto expected = pattern.substr(0, pattern.find('/'));
    pattern.remove_prefix(expected.size());
    if (expected == "{}" && !segment.empty()) {
      ids.push_back(segment);
    } else if (expected != segment) {
      return std::nullopt;
    }
  }
  if (!pattern.empty()) return std::nullopt;
  return ids;
}

}  // namespace

std::variant<NoRoute, WrongVerb, RouteMatch> findRoute(boost::beast::http::verb verb, const Target& target) {
  std::string allow;
  for (const Route& route : kRoutes) {
    auto ids = matchPath(route.path, target);
    if (!ids) continue;
    if (route.verb == verb) return RouteMatch{.route = &route, .ids = std::move(*ids)};
    allow += (allow.empty() ? "" : ", ") + std::string(boost::beast::http::to_string(route.verb));
  }
  if (allow.empty()) return NoRoute{};
  return WrongVerb{.allow = std::move(allow)};
}

}  // namespace varnel::http
