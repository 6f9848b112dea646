// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/json/value.h"

namespace varnel::wire {

/// An approval or a question that the agent waits on.
struct PendingRequest {
  std::string id;
  std::string method;
  std::string sessionId;
  std::optional<std::string> turnId;
  double createdAt = 0;  ///< seconds since 1970, UTC
  json::JSONValue::Object params;
  /// Strings or objects, as the agent sent them.
  json::JSONValue::Array availableDecisions;
  bool resolved = false;

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const PendingRequest&, const PendingRequest&);

}  // namespace varnel::wire
