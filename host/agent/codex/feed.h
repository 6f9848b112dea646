// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/wire/request.h"
#include "host/agent/agent.h"
#include "host/agent/codex/thread.h"
#include "host/store/agent_memory.h"

namespace varnel::agent::codex {

/// All conversations as the agent's notifications leave them: no I/O, no waiting. What it learns and the agent will
/// forget is put aside to be kept.
class Feed {
 public:
  /// A question of the agent that nobody has answered yet.
  struct Open {
    wire::PendingRequest request;
    JSONValue id;          ///< the agent's own
    std::string threadId;  ///< a sub-agent's, when it asks
  };
  struct Hooks {
    std::function<double()> now;
    std::function<void(const Change&)> report;
    /// A conversation is at work whose events do not come here.
    std::function<void(const std::string& threadId)> follow;
  };
  explicit Feed(Hooks hooks) : m_hooks(std::move(hooks)) {}

  std::map<std::string, Thread> threads;
  std::map<std::string, Open> requests;        ///< by the bridge's id
  std::map<std::string, std::string> parents;  ///< sub-agents, to who began them
  JSONValue rateLimits;                        ///< as last told, without what was not told

  /// What is new and must outlive the agent's process; taken by whoever writes it.
  std::vector<store::AgentMemory::Item> itemsToKeep;
  std::set<std::string> threadsToKeep;

  void notified(const std::string& method, const JSONValue& params);
  /// The bridge's id of a request is the same in every connection to one server process and in no other.
  void asked(const std::string& serverId, const JSONValue& id, const std::string& method, const JSONValue& params);
  /// The connection is gone, and with it what only the process knew.
  void disconnected();

  /// Null when it is not known.
  Thread* find(const std::string& id);
  Thread& add(const std::string& id);
  /// The conversation that a sub-agent works for; the id itself for any other.
  [[nodiscard]] std::string rootOf(const std::string& threadId) const;
  [[nodiscard]] bool hasRequests(const std::string& id) const;
  /// A sub-agent was found out to be one.
  void adopt(const std::string& child, const std::string& parent);
  void report(Change::Kind kind, const Thread& thread, std::optional<std::string> turnId = std::nullopt) const;
  void mergeRateLimits(const JSONValue& told);

 private:
  using Handler = void (Feed::*)(const JSONValue&);
  static const std::map<std::string, Handler, std::less<>>& handlers();
  Thread* threadOf(const JSONValue& params);

  void onStarted(const JSONValue& params);
  void onStatus(const JSONValue& params);
  void onArchived(const JSONValue& params);
  void onUnarchived(const JSONValue& params);
  void onDeleted(const JSONValue& params);
  void onClosed(const JSONValue& params);
  void onName(const JSONValue& params);
  void onSettings(const JSONValue& params);
  void onTokenUsage(const JSONValue& params);
  void onTurnStarted(const JSONValue& params);
  void onTurnCompleted(const JSONValue& params);
  void onPlan(const JSONValue& params);
  void onItemStarted(const JSONValue& params);
  void onItemCompleted(const JSONValue& params);
  void onMessageDelta(const JSONValue& params);
  void onError(const JSONValue& params);
  void onResolved(const JSONValue& params);
  void onRateLimits(const JSONValue& params);

  void takeItem(const JSONValue& params, double at, bool isOver);
  void touch(Thread& thread);

  Hooks m_hooks;
};

}  // namespace varnel::agent::codex
