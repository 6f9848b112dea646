// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// What the user has done: each is the agent's own request, with what must stand around it.
#include <algorithm>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>

#include "core/json/enum_names.h"
#include "host/agent/codex/answers.h"
#include "host/agent/codex/codex_agent.h"
#include "host/agent/codex/items.h"
#include "host/agent/codex/json_access.h"

namespace varnel::agent::codex {

namespace asio = boost::asio;
using Object = JSONValue::Object;
using Array = JSONValue::Array;
using Kind = AgentError::Kind;

namespace {

/// An interrupt that nothing answers is one for which no turn runs.
constexpr std::chrono::seconds kInterruptTime{5};

std::unexpected<AgentError> refuse(Kind kind, std::string text) {
  return std::unexpected(AgentError{kind, std::move(text)});
}

template <class T>
Result<void> done(const Result<T>& result) {
  if (!result) return std::unexpected(result.error());
  return {};
}

Array inputOf(const TurnInput& input) {
  Array parts;
  if (!input.text.empty()) {
    parts.emplace_back(Object{{"type", "text"}, {"text", input.text}, {"text_elements", Array()}});
  }
  for (const auto& attachment : input.attachments) {
    if (attachment.record.mimeType.starts_with("image/")) {
      parts.emplace_back(Object{{"type", "localImage"}, {"path", attachment.path}});
    } else {
      const auto note = std::string(kFileNote) + attachment.path + " (" + attachment.record.name + ")";
      parts.emplace_back(Object{{"type", "text"}, {"text", note}, {"text_elements", Array()}});
    }
  }
  return parts;
}

JSONValue effortOf(const wire::ConversationPreferences& preferences) {
  return preferences.reasoningEffort.empty() ? JSONValue() : JSONValue(preferences.reasoningEffort);
}

void addPreferences(Object& params, const wire::ConversationPreferences& preferences) {
  params["model"] = preferences.model;
  params["effort"] = effortOf(preferences);
  params["serviceTier"] = preferences.serviceTier.value_or("default");
  params["collaborationMode"] = Object{{"mode", std::string(json::nameOf(preferences.mode))},
                                       {"settings", Object{{"model", preferences.model},
                                                           {"reasoning_effort", effortOf(preferences)},
                                                           {"developer_instructions", JSONValue()}}}};
}

/// The turn that runs, in the words with which the agent refuses another one.
std::optional<std::string> turnNamedIn(const std::string& text) {
  const auto found = text.find("but found `");
  if (found == std::string::npos) return std::nullopt;
  const auto begin = found + std::string_view("but found `").size();
  return text.substr(begin, text.find('`', begin) - begin);
}

}  // namespace

/// A turn begins only in a conversation that this server has loaded. The agent does not restore the sandbox: it is
/// given with every load.
asio::awaitable<Result<void>> CodexAgent::load(std::string sessionId) {
  const auto thread = open(sessionId, false);
  if (!thread) co_return std::unexpected(thread.error());
  if ((*thread)->loaded && (*thread)->followed) co_return Result<void>();
  Object params{{"threadId", sessionId}, {"excludeTurns", true}};
  const auto memory = (*thread)->memory;
  if (memory.sandbox) params["sandbox"] = *memory.sandbox;
  if (memory.approvalPolicy) params["approvalPolicy"] = *memory.approvalPolicy;
  const auto answer = co_await call("thread/resume", std::move(params));
  if (!answer) co_return std::unexpected(answer.error());
  auto* loaded = m_feed.find(sessionId);
  if (loaded == nullptr) co_return refuse(Kind::NotFound, "There is no such conversation.");
  takeRecord(*loaded, memberOf(*answer, "thread"));
  takeStartSettings(*loaded, *answer);
  // What was chosen for an unloaded conversation holds from the next turn on.
  if (memory.preferences) loaded->memory.preferences = memory.preferences;
  loaded->loaded = loaded->followed = true;
  m_feed.threadsToKeep.insert(sessionId);
  co_return Result<void>();
}

asio::awaitable<Result<std::string>> CodexAgent::beginTurn(std::string sessionId, TurnInput input) {
  Object params{{"threadId", sessionId}, {"input", inputOf(input)}};
  if (!input.clientMessageId.empty()) params["clientUserMessageId"] = input.clientMessageId;
  addPreferences(params, input.preferences);
  const auto answer = co_await call("turn/start", std::move(params));
  if (!answer) co_return std::unexpected(answer.error());
  auto turn = textOf(memberOf(*answer, "turn"), "id");
  auto* thread = m_feed.find(sessionId);
  if (thread == nullptr) co_return turn;
  // A short turn may be over by the time its beginning is answered.
  if (thread->memory.last.id != turn) {
    thread->turn = turn;
    thread->active = thread->loaded = thread->begun = true;
  }
  thread->broken = false;
  thread->memory.preferences = input.preferences;
  thread->updatedAt = std::max(thread->updatedAt, m_options.now());
  m_feed.threadsToKeep.insert(sessionId);
  wantKept();
  m_feed.report(Change::Kind::Turn, *thread, turn);
  co_return turn;
}

Task<std::string> CodexAgent::createSession(NewSession session) {
  Object params{{"cwd", session.cwd},
                {"sandbox", session.sandbox},
                {"approvalPolicy", session.approvalPolicy},
                {"historyMode", "paginated"},
                {"model", session.firstTurn.preferences.model},
                {"serviceTier", session.firstTurn.preferences.serviceTier.value_or("default")}};
  const auto answer = co_await call("thread/start", std::move(params));
  if (!answer) co_return std::unexpected(answer.error());
  const auto& record = memberOf(*answer, "thread");
  const auto id = textOf(record, "id");
  auto& thread = m_feed.add(id);
  takeRecord(thread, record);
  takeStartSettings(thread, *answer);
  thread.memory.sandbox = session.sandbox;
  thread.memory.approvalPolicy = session.approvalPolicy;
  thread.loaded = thread.followed = true;
  m_feed.threadsToKeep.insert(id);
  const auto begun = co_await beginTurn(id, std::move(session.firstTurn));
  if (!begun) co_return std::unexpected(begun.error());
  if (const auto* made = m_feed.find(id)) m_feed.report(Change::Kind::List, *made);
  co_return id;
}

Task<void> CodexAgent::sendMessage(std::string sessionId, TurnInput input) {
  if (const auto loaded = co_await load(sessionId); !loaded) co_return std::unexpected(loaded.error());
  co_return done(co_await beginTurn(std::move(sessionId), std::move(input)));
}

/// The objective goes out as a message, so that it is seen and carries its files; the goal's own turns follow it.
Task<void> CodexAgent::startGoal(std::string sessionId, TurnInput input) {
  if (const auto loaded = co_await load(sessionId); !loaded) co_return std::unexpected(loaded.error());
  const auto objective = input.text;
  if (const auto begun = co_await beginTurn(sessionId, std::move(input)); !begun) {
    co_return std::unexpected(begun.error());
  }
  co_return done(co_await call("thread/goal/set",
                               Object{{"threadId", sessionId}, {"objective", objective}, {"status", "active"}}));
}

Task<void> CodexAgent::updateSettings(std::string sessionId, wire::ConversationPreferences preferences) {
  const auto thread = open(sessionId, false);
  if (!thread) co_return std::unexpected(thread.error());
  if ((*thread)->loaded && (*thread)->followed) {
    Object params{{"threadId", sessionId}};
    addPreferences(params, preferences);
    const auto answer = co_await call("thread/settings/update", std::move(params));
    if (!answer) co_return std::unexpected(answer.error());
  }
  auto* changed = m_feed.find(sessionId);
  if (changed == nullptr) co_return refuse(Kind::NotFound, "There is no such conversation.");
  changed->memory.preferences = std::move(preferences);
  m_feed.threadsToKeep.insert(sessionId);
  wantKept();
  m_feed.report(Change::Kind::Settings, *changed);
  co_return Result<void>();
}

/// Asked without a turn the agent would not answer before another one has ended.
asio::awaitable<Result<std::string>> CodexAgent::runningTurn(std::string sessionId) {
  const auto before = open(sessionId, false);
  if (!before) co_return std::unexpected(before.error());
  if ((*before)->active && !(*before)->turn) co_await readLastTurn(sessionId);
  const auto thread = open(sessionId, false);
  if (!thread) co_return std::unexpected(thread.error());
  if (!(*thread)->active || !(*thread)->turn)
    co_return refuse(Kind::Conflict, "Nothing is running in this conversation.");
  co_return *(*thread)->turn;
}

Task<void> CodexAgent::interrupt(std::string sessionId) {
  auto turn = co_await runningTurn(sessionId);
  if (!turn) co_return std::unexpected(turn.error());
  const auto connection = m_connection;
  if (!connection) co_return refuse(Kind::Unavailable, "The agent is not running.");
  for (int attempt = 0; attempt < 2; ++attempt) {
    const Object params{{"threadId", sessionId}, {"turnId", *turn}};
    const auto answer = co_await connection->call("turn/interrupt", params, kInterruptTime);
    if (answer || answer.error().kind == RpcError::Kind::TimedOut) break;
    const auto other = turnNamedIn(answer.error().text);
    if (!other) co_return std::unexpected(failureOf(answer.error()));
    turn = *other;
  }
  // A goal would begin the next turn by itself, and what was run goes on beside the turn.
  const auto goal = co_await call("thread/goal/get", Object{{"threadId", sessionId}});
  if (goal && textOf(memberOf(*goal, "goal"), "status") == "active") {
    const auto paused = co_await call("thread/goal/set", Object{{"threadId", sessionId}, {"status", "paused"}});
    if (!paused) co_return std::unexpected(paused.error());
  }
  co_return done(co_await call("thread/backgroundTerminals/clean", Object{{"threadId", sessionId}}));
}

Task<void> CodexAgent::rename(std::string sessionId, std::string name) {
  if (const auto known = open(sessionId, false); !known) co_return std::unexpected(known.error());
  const auto answer = co_await call("thread/name/set", Object{{"threadId", sessionId}, {"name", name}});
  if (!answer) co_return std::unexpected(answer.error());
  if (auto* thread = m_feed.find(sessionId)) {
    const auto begin = name.find_first_not_of(" \t\r\n");
    thread->name = name.substr(begin, name.find_last_not_of(" \t\r\n") - begin + 1);
    m_feed.report(Change::Kind::Settings, *thread);
  }
  co_return Result<void>();
}

Task<void> CodexAgent::archive(std::string sessionId) {
  if (const auto known = open(sessionId, false); !known) co_return std::unexpected(known.error());
  const auto answer = co_await call("thread/archive", Object{{"threadId", sessionId}});
  if (!answer) co_return std::unexpected(answer.error());
  m_feed.notified("thread/archived", Object{{"threadId", sessionId}});
  co_return Result<void>();
}

Task<void> CodexAgent::unarchive(std::string sessionId) {
  const auto known = open(sessionId, true);
  if (!known) co_return std::unexpected(known.error());
  if (!(*known)->archived) co_return refuse(Kind::Conflict, "This conversation is not archived.");
  const auto answer = co_await call("thread/unarchive", Object{{"threadId", sessionId}});
  if (!answer) co_return std::unexpected(answer.error());
  m_feed.notified("thread/unarchived", Object{{"threadId", sessionId}});
  co_return Result<void>();
}

Task<void> CodexAgent::resolve(std::string requestId, json::JSONValue result) {
  const auto found = m_feed.requests.find(requestId);
  if (found == m_feed.requests.end()) {
    if (m_memory.wasAnswered(requestId)) co_return refuse(Kind::Conflict, "This request was already answered.");
    // A request that somebody else answered, or whose process ended, was one of that form.
    if (requestId.contains('-') && requestId.contains('.')) {
      co_return refuse(Kind::Conflict, "This request was already answered or withdrawn.");
    }
    co_return refuse(Kind::NotFound, "There is no such request.");
  }
  const auto open = found->second;
  if (auto judged = judge(open.request, result); !judged) co_return std::unexpected(judged.error());
  const auto connection = m_connection;
  if (!connection) co_return refuse(Kind::Unavailable, "The agent is not running.");
  m_memory.keepAnswered(requestId, m_options.now());
  connection->answer(open.id, std::move(result));
  m_feed.requests.erase(found);
  if (const auto* thread = m_feed.find(open.request.sessionId)) {
    m_feed.report(Change::Kind::Request, *thread, open.request.turnId);
  }
  co_return Result<void>();
}

}  // namespace varnel::agent::codex
