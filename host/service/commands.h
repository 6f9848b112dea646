// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <vector>

#include "core/wire/bodies.h"
#include "host/agent/agent.h"
#include "host/service/attachments.h"
#include "host/service/events.h"
#include "host/service/failure.h"
#include "host/store/tracking.h"

namespace varnel::service {

/// What no phone may choose, whatever the agent would take.
struct Policy {
  std::set<std::string> forbidden;  ///< sandboxes and approval policies
};

/// What a phone asks to be done. Preferences are checked against the agent's catalogue, since the agent itself would
/// take any word.
class Commands {
 public:
  Commands(agent::Agent& agent, store::Tracking& tracking, Attachments& attachments, Events& events, Policy policy)
      : m_agent(agent),
        m_tracking(tracking),
        m_attachments(attachments),
        m_events(events),
        m_policy(std::move(policy)) {}

  /// Whether a message could be sent as it is.
  Task<void> checkMessage(std::string sessionId, wire::MessageBody body);
  /// `messageId` is the same for a repeated attempt.
  Task<void> sendMessage(std::string sessionId, wire::MessageBody body, std::string messageId);
  Task<void> startGoal(std::string sessionId, wire::GoalBody body, std::string messageId);
  Task<void> updateSettings(std::string sessionId, wire::SettingsBody body);
  Task<wire::NewSessionResult> createSession(wire::NewSessionBody body, std::string messageId);
  Task<void> interrupt(std::string sessionId);
  Task<void> rename(std::string sessionId, wire::RenameBody body);
  Task<void> archive(std::string sessionId);
  Task<void> unarchive(std::string sessionId);
  Task<void> resolve(std::string requestId, wire::ResolveBody body);
  /// Fails for what is no conversation, archived ones included.
  Task<void> checkExists(std::string sessionId);
  /// Pins or unpins a conversation; with an action, "track" and "untrack" say which one the lock screen follows, and
  /// "clear" ends that for one conversation or, without an id, for all.
  Task<void> track(wire::TrackingBody body);

 private:
  Task<wire::ConversationPreferences> checkedPreferences(wire::SettingsBody body);
  Task<agent::TurnInput> turnInput(std::string sessionId, wire::MessageBody body, std::string messageId);
  Task<void> checkProject(std::string cwd, bool acknowledged);
  void begun(const std::string& sessionId);

  agent::Agent& m_agent;
  store::Tracking& m_tracking;
  Attachments& m_attachments;
  Events& m_events;
  Policy m_policy;
};

}  // namespace varnel::service
