// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/agent/agent.h"

namespace varnel::support {

/// An agent that holds what a test puts into it, notes what it was asked to do and fails or waits on demand. Used on
/// the bridge's thread only.
class FakeAgent final : public agent::Agent {
 public:
  explicit FakeAgent(boost::asio::any_io_executor executor);

  std::vector<wire::SessionSummary> summaries;
  std::map<std::string, std::vector<wire::TranscriptItem>> items;
  std::map<std::string, std::vector<wire::PendingRequest>> requests;
  std::vector<wire::ArchivedSession> archivedSessions;
  std::vector<wire::ProjectRecord> projectRecords;
  json::JSONValue catalogue;
  wire::UsageEnvelope usageEnvelope;
  std::vector<std::string> calls;            ///< one line each: what was asked, of what, with what
  std::vector<agent::TurnInput> inputs;      ///< of messages, goals and new sessions
  std::optional<agent::AgentError> failure;  ///< of every command

  /// Puts a conversation into the list, with one message from the user and one from the agent.
  wire::SessionSummary& addSession(const std::string& id, double updatedAt);
  void change(agent::Change::Kind kind, std::optional<std::string> sessionId);
  std::optional<agent::AgentError> readFailure;  ///< of the lists and of a conversation

  /// Commands wait from now on, until `release`.
  void hold() { m_held = true; }
  /// So does the list of conversations.
  void holdList() { m_listHeld = true; }
  /// Who waits for it.
  [[nodiscard]] int listsWaiting() const { return m_listsWaiting; }
  void release();

  agent::Task<void> start(std::function<void(const agent::Change&)> onChange) override;
  void stop() override { release(); }
  agent::Task<std::vector<wire::SessionSummary>> sessions() override;
  agent::Task<agent::Conversation> conversation(std::string sessionId) override;
  agent::Task<std::vector<wire::ArchivedSession>> archived() override;
  agent::Task<std::vector<wire::ProjectRecord>> projects() override;
  agent::Task<json::JSONValue> models() override;
  agent::Task<wire::RateLimitEnvelope> rateLimit() override;
  agent::Task<wire::UsageEnvelope> usage(std::optional<std::string> sessionId) override;
  agent::Task<std::string> createSession(agent::NewSession session) override;
  agent::Task<void> sendMessage(std::string sessionId, agent::TurnInput input) override;
  agent::Task<void> startGoal(std::string sessionId, agent::TurnInput input) override;
  agent::Task<void> updateSettings(std::string sessionId, wire::ConversationPreferences preferences) override;
  agent::Task<void> interrupt(std::string sessionId) override;
  agent::Task<void> rename(std::string sessionId, std::string name) override;
  agent::Task<void> archive(std::string sessionId) override;
  agent::Task<void> unarchive(std::string sessionId) override;
  agent::Task<void> resolve(std::string requestId, json::JSONValue result) override;

 private:
  agent::Task<void> perform(std::string call);

  boost::asio::steady_timer m_gate;
  bool m_held = false;
  bool m_listHeld = false;
  int m_listsWaiting = 0;
  std::function<void(const agent::Change&)> m_onChange;
};

/// A message or a tool run with that text.
wire::TranscriptItem item(std::string id, std::string type, std::string text);

}  // namespace varnel::support
