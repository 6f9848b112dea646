// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/agent/agent.h"

namespace varnel::service {

/// Decides when the changes of a conversation are told: the first at once, then at most two a second, the last always.
/// Pure; time is passed in.
class Coalescer {
 public:
  using Time = std::chrono::milliseconds;
  static constexpr Time kInterval{500};

  /// Changes of one conversation that are told as one event.
  struct Due {
    std::optional<std::string> sessionId;  ///< absent for what concerns the whole account
    std::set<agent::Change::Kind> kinds;
    std::optional<std::string> turnId;  ///< the last one named
    bool operator==(const Due&) const = default;
  };

  void note(const agent::Change& change);
  /// What is to be told now, in order of the conversations' ids.
  std::vector<Due> take(Time now);
  /// When `take` gives something next; nothing while all is told.
  [[nodiscard]] std::optional<Time> next() const;

 private:
  struct Lane {
    std::optional<Time> told;
    std::optional<Due> waiting;
  };
  [[nodiscard]] static Time dueAt(const Lane& lane);
  std::map<std::string, Lane> m_lanes;
};

}  // namespace varnel::service
