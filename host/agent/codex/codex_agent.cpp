// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/codex_agent.h"

#include <algorithm>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <chrono>
#include <cstdlib>

#include "host/agent/codex/items.h"
#include "host/agent/codex/json_access.h"
#include "host/agent/codex/projects.h"

namespace varnel::agent::codex {

namespace asio = boost::asio;
using Object = JSONValue::Object;

namespace {

double systemNow() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

CodexOptions withClock(CodexOptions options) {
  if (!options.now) options.now = systemNow;
  return options;
}

/// Nothing has been written (yet) of a conversation whose first turn is only beginning.
bool isUnwritten(const RpcError& error, const Thread& thread) {
  const auto& text = error.text;
  if (error.kind != RpcError::Kind::Refused) return false;
  if (text.contains("rollout at ") && text.contains(" is empty")) return true;
  if (thread.loaded && text.contains("no rollout found")) return true;
  return text.contains("list_turns is not supported") || text.contains("not materialized");
}

}  // namespace

AgentError failureOf(const RpcError& error) {
  using Kind = AgentError::Kind;
  if (error.kind != RpcError::Kind::Refused) return {.kind = Kind::Unavailable, .text = error.text};
  if (error.text.contains("already has an active writer")) {
    return {.kind = Kind::Conflict,
            .text = "This conversation is open in another program on the host. Close it there to go on here."};
  }
  if (error.text.contains("not found") || error.text.contains("no rollout found") ||
      error.text.contains("no archived rollout found")) {
    return {.kind = Kind::NotFound, .text = "The agent has no such conversation."};
  }
  return {.kind = Kind::Invalid, .text = error.text};
}

CodexAgent::CodexAgent(asio::any_io_executor executor, store::AgentMemory& memory, CodexOptions options)
    : m_executor(std::move(executor)),
      m_memory(memory),
      m_options(withClock(std::move(options))),
      m_feed({.now = m_options.now,
              .report =
                  [this](const Change& change) {
                    if (m_onChange) m_onChange(change);
                  },
              .follow = [this](const std::string& id) { asio::co_spawn(m_executor, follow(id), asio::detached); }}),
      m_signal(m_executor),
      m_look(m_executor) {}

asio::awaitable<Result<JSONValue>> CodexAgent::call(std::string method, JSONValue params) {
  const auto connection = m_connection;
  if (!connection) {
    co_return std::unexpected(
        AgentError{AgentError::Kind::Unavailable, "The agent is not running. The bridge tries to start it."});
  }
  auto answer = co_await connection->call(std::move(method), std::move(params));
  if (!answer) co_return std::unexpected(failureOf(answer.error()));
  co_return std::move(*answer);
}

Result<Thread*> CodexAgent::open(const std::string& sessionId, bool mayBeArchived) {
  auto* thread = m_feed.find(sessionId);
  if (thread == nullptr) {
    return std::unexpected(AgentError{AgentError::Kind::NotFound, "There is no such conversation."});
  }
  if (thread->archived && !mayBeArchived) {
    return std::unexpected(AgentError{AgentError::Kind::Conflict, "This conversation is archived."});
  }
  return thread;
}

wire::SessionSummary CodexAgent::shown(const Thread& thread) const {
  auto summary = summaryOf(thread, m_feed.hasRequests(thread.id));
  auto& preferences = summary.turnPreferences;
  if (preferences && preferences->reasoningEffort.empty()) {
    for (const auto& model : listOf(m_models, "data")) {
      if (textOf(model, "id") != preferences->model && textOf(model, "model") != preferences->model) continue;
      preferences->reasoningEffort = textOf(model, "defaultReasoningEffort");
    }
  }
  return summary;
}

Task<std::vector<wire::SessionSummary>> CodexAgent::sessions() {
  std::vector<wire::SessionSummary> summaries;
  for (const auto& [id, thread] : m_feed.threads) {
    if (!thread.archived && thread.begun) summaries.push_back(shown(thread));
  }
  std::ranges::sort(summaries, [](const auto& a, const auto& b) {
    return a.updatedAt != b.updatedAt ? a.updatedAt > b.updatedAt : a.id < b.id;
  });
  co_return summaries;
}

Task<std::vector<wire::ArchivedSession>> CodexAgent::archived() {
  std::vector<wire::ArchivedSession> sessions;
  for (const auto& [id, thread] : m_feed.threads) {
    if (thread.archived) sessions.push_back({thread.id, thread.name, thread.cwd, thread.updatedAt});
  }
  co_return sessions;
}

Task<Conversation> CodexAgent::conversation(std::string sessionId) {
  if (const auto known = open(sessionId, true); !known) co_return std::unexpected(known.error());
  const auto connection = m_connection;
  if (!connection) {
    co_return std::unexpected(AgentError{AgentError::Kind::Unavailable, "The agent is not running."});
  }
  const auto read = co_await connection->call("thread/read", Object{{"threadId", sessionId}, {"includeTurns", true}});
  const auto thread = open(sessionId, true);
  if (!thread) co_return std::unexpected(thread.error());
  if (!read && !isUnwritten(read.error(), **thread)) co_return std::unexpected(failureOf(read.error()));
  keepNow();
  const auto nothing = JSONValue();
  const auto& turns = listOf(memberOf(read ? *read : nothing, "thread"), "turns");
  Conversation conversation{.summary = shown(**thread),
                            .items = transcriptOf(turns, **thread, m_memory.items(sessionId)),
                            .pendingRequests = {}};
  for (const auto& [id, open] : m_feed.requests) {
    if (open.request.sessionId == sessionId) conversation.pendingRequests.push_back(open.request);
  }
  std::ranges::sort(conversation.pendingRequests, {}, &wire::PendingRequest::createdAt);
  co_return conversation;
}

Task<std::vector<wire::ProjectRecord>> CodexAgent::projects() {
  std::set<std::string> folders(m_options.projects.begin(), m_options.projects.end());
  for (const auto& [id, thread] : m_feed.threads) {
    if (thread.cwd) folders.insert(*thread.cwd);
  }
  // What the agent's own configuration names; without it the list is shorter, not absent.
  if (const auto config = co_await call("config/read", Object{{"includeLayers", false}})) {
    for (const auto& [path, ignored] : objectOf(memberOf(memberOf(*config, "config"), "projects")))
      folders.insert(path);
  }
  const char* home = std::getenv("HOME");
  co_return projectsOf(folders, home == nullptr ? "/" : home);
}

Task<JSONValue> CodexAgent::models() {
  if (m_models.object() != nullptr) co_return m_models;
  JSONValue::Array all;
  JSONValue cursor;
  do {
    const auto page = co_await call("model/list", Object{{"includeHidden", false}, {"cursor", cursor}});
    if (!page) co_return std::unexpected(page.error());
    const auto& models = listOf(*page, "data");
    all.insert(all.end(), models.begin(), models.end());
    cursor = memberOf(*page, "nextCursor");
  } while (cursor.string() != nullptr);
  m_models = Object{{"data", std::move(all)}};
  co_return m_models;
}

}  // namespace varnel::agent::codex
