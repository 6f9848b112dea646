// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/awaitable.hpp>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "host/http/answer.h"
#include "host/http/routes.h"
#include "host/service/repeats.h"
#include "host/store/devices.h"

namespace varnel::http {

/// A request that has been read in full.
struct Job {
  service::Bridge& bridge;
  const Route& route;
  std::vector<std::string> ids;
  Target target;
  std::optional<store::Device> device;
  std::string path;  ///< as it was written
  std::string key;   ///< empty when the request carries none
  std::string body;
  std::chrono::milliseconds time;
};

/// The answer of the route's handler, or the one that was given to the same request before. After `time` the phone is
/// told so, while the handler goes on and its answer is kept for the repetition.
boost::asio::awaitable<Answer> runHandler(Job job);

/// What makes a request that request, whenever it comes again.
store::Digest contentOf(const Job& job);

/// The key that a repeated request is known by; nothing when there is none. Fails for one that is no key.
service::Outcome<std::optional<service::Repeats::Request>> repeatable(const std::optional<store::Device>& device,
                                                                      const std::string& key, store::Digest content);

}  // namespace varnel::http
