// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "core/json/raw_value.h"

namespace varnel::wire {

/// One entry of a conversation: a message, a tool run, a piece of reasoning.
struct TranscriptItem {
  std::string id;
  std::string type;
  double timestamp = 0;  ///< seconds since 1970, UTC
  std::optional<std::string> role;
  std::optional<std::string> phase;
  std::optional<std::string> title;
  std::optional<std::string> text;
  /// Never the value null: null on the wire leaves it absent.
  std::optional<json::RawValue> detail;
  std::optional<std::string> status;

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const TranscriptItem&, const TranscriptItem&);

}  // namespace varnel::wire
