// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/agent/agent.h"
#include "host/service/failure.h"
#include "host/service/queue.h"
#include "host/store/tracking.h"

namespace varnel::service {

/// What a phone reads: the agent's answers with the bridge's own marks on them, as JSON text that the phone's codec
/// has read.
class Conversations {
 public:
  static constexpr std::size_t kArchivePage = 20;

  Conversations(agent::Agent& agent, store::Tracking& tracking, const Queue& queue)
      : m_agent(agent), m_tracking(tracking), m_queue(queue) {}

  /// In triage order: pinned ones first, then what needs input, what is running, and the rest by last change.
  Task<std::string> list();
  /// `{"items", "pendingRequests", "session", "queued"}`.
  Task<std::string> detail(std::string sessionId);
  Task<std::string> archived(std::optional<std::string> cursor);
  Task<std::string> projects();
  Task<std::string> models();
  Task<std::string> rateLimit();
  Task<std::string> usage(std::optional<std::string> sessionId);

 private:
  agent::Agent& m_agent;
  store::Tracking& m_tracking;
  const Queue& m_queue;
};

/// Brings a list into triage order.
void sortForTriage(std::vector<wire::SessionSummary>& sessions);

}  // namespace varnel::service
