// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/json/raw_value.h"

namespace varnel::wire {

/// One message of the event stream.
struct LiveEvent {
  std::int64_t sequence = 0;
  std::string type;
  double timestamp = 0;  ///< seconds since 1970, UTC
  std::optional<std::string> sessionId;
  std::optional<std::string> turnId;
  json::RawObject payload;

  [[nodiscard]] std::int64_t identity() const { return sequence; }
};
bool operator==(const LiveEvent&, const LiveEvent&);

}  // namespace varnel::wire
