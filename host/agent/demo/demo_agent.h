// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <cstdint>
#include <functional>
#include <memory>

#include "host/agent/agent.h"

namespace varnel::agent::demo {

class World;

struct DemoOptions {
  /// Equal seeds and equal commands give equal conversations, ids included; only times differ.
  std::uint64_t seed = 1;
  /// How many times faster than life a turn is played; a turn takes six to ten seconds at 1.
  double speed = 1.0;
  /// Adds a conversation with that many items; none when 0.
  std::size_t largeConversationItems = 0;
  /// Adds that many short conversations to the list.
  std::size_t extraConversations = 0;
  /// Seconds since 1970; the system clock when empty.
  std::function<double()> now;
};

/// An agent that plays its part from written scripts: nothing is run on the host and nothing leaves it. It shows every
/// kind of conversation and answers messages, goals, approvals and stops as a real one would, so that the bridge and
/// the phone can be tried, shown and tested without an account.
///
/// Everything happens on the one thread of the executor given; changes are reported from inside the calls that cause
/// them or from timers. Keeps nothing: a new agent begins anew.
class DemoAgent final : public Agent {
 public:
  DemoAgent(boost::asio::any_io_executor executor, DemoOptions options);
  ~DemoAgent() override;
  DemoAgent(const DemoAgent&) = delete;
  DemoAgent& operator=(const DemoAgent&) = delete;

  Task<void> start(std::function<void(const Change&)> onChange) override;
  void stop() override;

  Task<std::vector<wire::SessionSummary>> sessions() override;
  Task<Conversation> conversation(std::string sessionId) override;
  Task<std::vector<wire::ArchivedSession>> archived() override;
  Task<std::vector<wire::ProjectRecord>> projects() override;
  Task<json::JSONValue> models() override;
  Task<wire::RateLimitEnvelope> rateLimit() override;
  Task<wire::UsageEnvelope> usage(std::optional<std::string> sessionId) override;

  Task<std::string> createSession(NewSession session) override;
  Task<void> sendMessage(std::string sessionId, TurnInput input) override;
  Task<void> startGoal(std::string sessionId, TurnInput input) override;
  Task<void> updateSettings(std::string sessionId, wire::ConversationPreferences preferences) override;
  Task<void> interrupt(std::string sessionId) override;
  Task<void> rename(std::string sessionId, std::string name) override;
  Task<void> archive(std::string sessionId) override;
  Task<void> unarchive(std::string sessionId) override;
  Task<void> resolve(std::string requestId, json::JSONValue result) override;

 private:
  std::unique_ptr<World> m_world;
};

}  // namespace varnel::agent::demo
