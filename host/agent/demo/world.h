// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/agent/demo/demo_agent.h"
#include "host/agent/demo/demo_conversation.h"
#include "host/agent/demo/performer.h"
#include "host/agent/demo/usage_book.h"

namespace varnel::agent::demo {

/// All conversations of the demo agent and what can be done with them: the agent's calls without the waiting.
class World {
 public:
  World(boost::asio::any_io_executor executor, DemoOptions options);
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// Makes the conversations and lets those at work go on. Does nothing the second time.
  void start(std::function<void(const Change&)> onChange);
  void stop();

  [[nodiscard]] std::vector<wire::SessionSummary> sessions() const;
  [[nodiscard]] std::vector<wire::ArchivedSession> archived() const;
  Result<Conversation> conversation(const std::string& sessionId);
  UsageBook& usage() { return m_usage; }
  /// Null when there is no such conversation.
  [[nodiscard]] const DemoConversation* find(const std::string& sessionId) const;

  Result<std::string> createSession(NewSession session);
  Result<void> sendMessage(const std::string& sessionId, TurnInput input);
  Result<void> startGoal(const std::string& sessionId, TurnInput input);
  Result<void> updateSettings(const std::string& sessionId, wire::ConversationPreferences preferences);
  Result<void> interrupt(const std::string& sessionId);
  Result<void> rename(const std::string& sessionId, const std::string& name);
  Result<void> archive(const std::string& sessionId);
  Result<void> unarchive(const std::string& sessionId);
  Result<void> resolve(const std::string& requestId, const json::JSONValue& result);

 private:
  /// What is worked towards, and the turn that it has come to.
  struct Goal {
    TurnInput input;
    std::size_t turn = 0;
  };

  /// The performer is made when there is something to perform; of ten thousand conversations few ever need one.
  struct Place {
    std::unique_ptr<DemoConversation> conversation;
    std::unique_ptr<Performer> performer;
    std::optional<Goal> goal;
  };

  Place& add(std::unique_ptr<DemoConversation> conversation);
  Performer& performerOf(Place& place);
  Result<Place*> open(const std::string& sessionId);
  Result<Place*> openUnarchived(const std::string& sessionId);
  Result<bool> receive(Place& place, TurnInput& input);
  void pursue(Place& place);
  void report(const Change& change);

  boost::asio::any_io_executor m_executor;
  DemoOptions m_options;
  std::function<void(const Change&)> m_onChange;
  Stage m_stage;
  UsageBook m_usage;
  bool m_made = false;
  std::size_t m_created = 0;
  std::map<std::string, Place> m_places;
};

}  // namespace varnel::agent::demo
