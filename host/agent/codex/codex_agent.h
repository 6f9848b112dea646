// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/agent/agent.h"
#include "host/agent/codex/connection.h"
#include "host/agent/codex/feed.h"
#include "host/agent/codex/server.h"
#include "host/store/agent_memory.h"

namespace varnel::agent::codex {

struct CodexOptions {
  Installation installation;
  std::string version;                ///< of the bridge, as the agent is told it
  std::vector<std::string> projects;  ///< folders to begin in, beside those that the agent knows
  std::function<double()> now;        ///< seconds since 1970; the system clock when empty
  std::function<void(const std::string& line)> log;
};

/// The Codex agent on this host, over the server that it shares with every terminal: started when none runs, attached
/// to when one does, and again when it dies. Conversations are answered from memory, also while the agent is away;
/// what the agent forgets is kept in the bridge's store. One thread, that of the executor.
class CodexAgent final : public Agent {
 public:
  /// The version of the agent that this speaks to; another one is used all the same, said aloud.
  static constexpr std::string_view kVersion = "0.149.1";

  CodexAgent(boost::asio::any_io_executor executor, store::AgentMemory& memory, CodexOptions options);

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
  using Outcome = std::expected<void, std::string>;
  template <class T>
  using Await = boost::asio::awaitable<T>;

  // The connection's life: supervisor.cpp
  Await<void> supervise();
  Await<Outcome> connect();
  Await<std::expected<std::shared_ptr<Connection>, std::string>> reach();
  Await<Outcome> greet();
  Await<Outcome> loadAll();
  Await<std::expected<std::set<std::string>, std::string>> listThreads(bool archived);
  Await<void> readStates();
  Await<void> readLastTurn(std::string id);
  Await<void> watchOthers();
  Await<bool> lookForChanges();
  Await<void> follow(std::string id);
  void lost();
  void wantKept();
  Await<void> keepSoon();
  void keepNow();
  Await<void> pause(std::chrono::milliseconds time);
  void log(const std::string& line) const;

  // What is asked of it: codex_agent.cpp and commands.cpp
  Await<Result<JSONValue>> call(std::string method, JSONValue params);
  Result<Thread*> open(const std::string& sessionId, bool mayBeArchived);
  [[nodiscard]] wire::SessionSummary shown(const Thread& thread) const;
  Await<Result<void>> load(std::string sessionId);
  Await<Result<std::string>> beginTurn(std::string sessionId, TurnInput input);
  Await<Result<std::string>> runningTurn(std::string sessionId);

  boost::asio::any_io_executor m_executor;
  store::AgentMemory& m_memory;
  CodexOptions m_options;
  std::function<void(const Change&)> m_onChange;
  Feed m_feed;
  std::shared_ptr<Connection> m_connection;
  boost::asio::steady_timer m_signal;  ///< cancelled when the connection is lost, and at the stop
  boost::asio::steady_timer m_look;
  std::set<std::string> m_following;  ///< being followed right now
  std::map<std::string, std::string> m_remembered;
  JSONValue m_models;
  bool m_isKeeping = false;
  bool m_stopped = false;
};

/// What a call's failure means to who asked.
AgentError failureOf(const RpcError& error);

}  // namespace varnel::agent::codex
