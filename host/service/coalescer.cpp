// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/coalescer.h"

#include <algorithm>
#include <utility>

namespace varnel::service {

void Coalescer::note(const agent::Change& change) {
  auto& waiting = m_lanes[change.sessionId.value_or("")].waiting;
  if (!waiting) waiting = Due{.sessionId = change.sessionId, .kinds = {}, .turnId = std::nullopt};
  waiting->kinds.insert(change.kind);
  if (change.turnId) waiting->turnId = change.turnId;
}

std::vector<Coalescer::Due> Coalescer::take(Time now) {
  std::vector<Due> due;
  for (auto lane = m_lanes.begin(); lane != m_lanes.end();) {
    const bool isTime = now >= dueAt(lane->second);
    if (isTime && lane->second.waiting) {
      due.push_back(*std::exchange(lane->second.waiting, std::nullopt));
      lane->second.told = now;
    } else if (isTime) {
      lane = m_lanes.erase(lane);
      continue;
    }
    ++lane;
  }
  return due;
}

std::optional<Coalescer::Time> Coalescer::next() const {
  std::optional<Time> first;
  for (const auto& [id, lane] : m_lanes) {
    if (lane.waiting) first = std::min(first.value_or(Time::max()), dueAt(lane));
  }
  return first;
}

Coalescer::Time Coalescer::dueAt(const Lane& lane) {
  return lane.told ? *lane.told + kInterval : Time::min();
}

}  // namespace varnel::service
