// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// The connection's life: found or started, followed, lost and found again.
#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/use_awaitable.hpp>

#include "host/agent/codex/answers.h"
#include "host/agent/codex/codex_agent.h"
#include "host/agent/codex/json_access.h"

namespace varnel::agent::codex {

namespace asio = boost::asio;
using namespace std::chrono_literals;
using Object = JSONValue::Object;
using Array = JSONValue::Array;

namespace {

/// How long a server that was started may take until it listens.
constexpr std::chrono::seconds kStartTime{20};
constexpr std::chrono::milliseconds kStartStep{50};
constexpr std::chrono::milliseconds kLongestPause{30'000};
/// What other processes did is looked for so often; all conversations are compared every so many times.
constexpr std::chrono::milliseconds kLook{3000};
constexpr int kLooksUntilAll = 100;
constexpr int kPage = 100;

const Array kSources{"cli", "vscode", "exec", "appServer"};

std::string versionIn(const std::string& userAgent) {
  const auto begin = userAgent.find('/');
  if (begin == std::string::npos) return {};
  return userAgent.substr(begin + 1, userAgent.find(' ', begin) - begin - 1);
}

}  // namespace

Task<void> CodexAgent::start(std::function<void(const Change&)> onChange) {
  m_onChange = std::move(onChange);
  for (const auto& [id, text] : m_memory.threads()) m_remembered.emplace(id, text);
  const auto connected = co_await connect();
  if (!connected) co_return std::unexpected(AgentError{AgentError::Kind::Unavailable, connected.error()});
  asio::co_spawn(m_executor, supervise(), asio::detached);
  asio::co_spawn(m_executor, watchOthers(), asio::detached);
  co_return Result<void>();
}

void CodexAgent::stop() {
  m_stopped = true;
  m_onChange = {};
  m_signal.cancel();
  m_look.cancel();
  keepNow();
  if (m_connection) std::exchange(m_connection, nullptr)->close();
}

void CodexAgent::log(const std::string& line) const {
  if (m_options.log) m_options.log(line);
}

asio::awaitable<void> CodexAgent::pause(std::chrono::milliseconds time) {
  asio::steady_timer timer(m_executor, time);
  co_await timer.async_wait(asio::as_tuple(asio::use_awaitable));
}

/// Waits for the end of the connection and makes a new one, more and more seldom while that fails.
asio::awaitable<void> CodexAgent::supervise() {
  while (!m_stopped) {
    if (m_connection) {
      m_signal.expires_at(asio::steady_timer::time_point::max());
      co_await m_signal.async_wait(asio::as_tuple(asio::use_awaitable));
      continue;
    }
    for (auto wait = 1000ms; !m_stopped && !m_connection; wait = std::min(wait * 2, kLongestPause)) {
      const auto connected = co_await connect();
      if (m_stopped) co_return;
      if (connected) {
        if (m_onChange) m_onChange({.kind = Change::Kind::Lost});
        break;
      }
      log("the agent is away: " + connected.error());
      co_await pause(wait);
    }
  }
}

void CodexAgent::lost() {
  m_connection.reset();
  m_feed.disconnected();
  m_models = JSONValue();
  log("the connection to the agent was lost");
  if (m_onChange) m_onChange({.kind = Change::Kind::Lost});
  m_signal.cancel();
}

asio::awaitable<CodexAgent::Outcome> CodexAgent::connect() {
  auto reached = co_await reach();
  if (!reached) co_return std::unexpected(reached.error());
  m_connection = *reached;
  m_connection->listen({.notified =
                            [this](const std::string& method, const JSONValue& params) {
                              m_feed.notified(method, params);
                              wantKept();
                            },
                        .asked =
                            [this](const JSONValue& id, const std::string& method, const JSONValue& params) {
                              if (!m_connection) return;
                              if (isQuestion(method)) {
                                m_feed.asked(m_connection->serverId(), id, method, params);
                              } else {
                                // Unanswered, its turn would wait for ever.
                                m_connection->refuse(id, "The bridge does not do that.");
                              }
                            },
                        .closed = [this] { lost(); },
                        .log = [this](const std::string& line) { log(line); }});
  auto greeted = co_await greet();
  if (greeted && m_connection) greeted = co_await loadAll();
  if (greeted && !m_connection) greeted = std::unexpected("the connection to the agent was lost");
  if (!greeted && m_connection) std::exchange(m_connection, nullptr)->close();
  if (greeted) asio::co_spawn(m_executor, readStates(), asio::detached);
  co_return greeted;
}

/// A connection to the server that runs, or to one that is started here.
asio::awaitable<std::expected<std::shared_ptr<Connection>, std::string>> CodexAgent::reach() {
  const auto socket = m_options.installation.socket();
  auto connection = co_await Connection::open(m_executor, socket);
  if (connection) co_return connection;
  if (auto started = startServer(m_options.installation); !started) {
    co_return std::unexpected("it cannot be started: " + started.error());
  }
  const auto end = std::chrono::steady_clock::now() + kStartTime;
  while (!connection && !m_stopped && std::chrono::steady_clock::now() < end) {
    co_await pause(kStartStep);
    connection = co_await Connection::open(m_executor, socket);
  }
  if (!connection) co_return std::unexpected("it was started and does not listen: " + connection.error());
  co_return connection;
}

asio::awaitable<CodexAgent::Outcome> CodexAgent::greet() {
  const Object client{{"name", "varnel"}, {"title", "Varnel"}, {"version", m_options.version}};
  const Array unwanted{"item/commandExecution/outputDelta", "item/reasoning/textDelta",
                       "item/reasoning/summaryTextDelta", "item/fileChange/outputDelta"};
  const Object capabilities{
      {"experimentalApi", true}, {"requestAttestation", false}, {"optOutNotificationMethods", unwanted}};
  const auto connection = m_connection;
  const auto answer =
      co_await connection->call("initialize", Object{{"clientInfo", client}, {"capabilities", capabilities}});
  if (!answer) co_return std::unexpected(answer.error().text);
  connection->notify("initialized");
  const auto version = versionIn(textOf(*answer, "userAgent"));
  if (version != kVersion) {
    log("the agent is version " + version + "; this bridge was made for " + std::string(kVersion));
  }
  co_return Outcome();
}

asio::awaitable<CodexAgent::Outcome> CodexAgent::loadAll() {
  std::set<std::string> seen;
  for (const bool archived : {false, true}) {
    auto listed = co_await listThreads(archived);
    if (!listed) co_return std::unexpected(listed.error());
    seen.merge(*listed);
  }
  const auto loaded = co_await call("thread/loaded/list", Object{});
  if (!loaded) co_return std::unexpected(loaded.error().text);
  std::set<std::string> here;
  for (const auto& id : listOf(*loaded, "data")) {
    if (id.string() != nullptr) here.insert(*id.string());
  }
  std::erase_if(m_feed.threads,
                [&](const auto& entry) { return !seen.contains(entry.first) && !here.contains(entry.first); });
  for (const auto& id : here) co_await follow(id);
  co_return Outcome();
}

/// The ids of all that are listed.
asio::awaitable<std::expected<std::set<std::string>, std::string>> CodexAgent::listThreads(bool archived) {
  std::set<std::string> seen;
  JSONValue cursor;
  do {
    const auto page = co_await call("thread/list", Object{{"limit", kPage},
                                                          {"sortKey", "recency_at"},
                                                          {"archived", archived},
                                                          {"sourceKinds", kSources},
                                                          {"cursor", cursor}});
    if (!page) co_return std::unexpected(page.error().text);
    for (const auto& record : listOf(*page, "data")) {
      const auto id = textOf(record, "id");
      if (id.empty() || optionalTextOf(record, "parentThreadId")) continue;
      const bool isNew = m_feed.find(id) == nullptr;
      auto& thread = m_feed.add(id);
      if (isNew && m_remembered.contains(id)) thread.memory = decodeMemory(m_remembered[id]);
      takeRecord(thread, record);
      thread.archived = archived;
      thread.begun = true;
      seen.insert(id);
    }
    cursor = memberOf(*page, "nextCursor");
  } while (cursor.string() != nullptr);
  co_return seen;
}

/// Reads how the conversations ended that changed while nobody looked.
asio::awaitable<void> CodexAgent::readStates() {
  std::vector<std::string> ids;
  for (const auto& [id, thread] : m_feed.threads) {
    if (!thread.archived && !thread.active && thread.memory.readAt != thread.updatedAt) ids.push_back(id);
  }
  for (const auto& id : ids) {
    if (m_stopped || !m_connection) co_return;
    co_await readLastTurn(id);
  }
}

asio::awaitable<void> CodexAgent::readLastTurn(std::string id) {
  const auto* before = m_feed.find(id);
  if (before == nullptr) co_return;
  const double updatedAt = before->updatedAt;
  const auto page = co_await call(
      "thread/turns/list", Object{{"threadId", id}, {"limit", 1}, {"itemsView", before->active ? "full" : "summary"}});
  auto* thread = m_feed.find(id);
  if (!page || thread == nullptr || m_stopped) co_return;
  const auto& turns = listOf(*page, "data");
  if (!turns.empty() && thread->active && textOf(turns[0], "status") == "inProgress") {
    const auto last = thread->memory.last;
    takeLastTurn(*thread, turns[0]);
    thread->memory.last = last;
    if (!thread->turn) thread->turn = textOf(turns[0], "id");
  } else if (!turns.empty() && !thread->active) {
    takeLastTurn(*thread, turns[0]);
  }
  if (!thread->active) thread->memory.readAt = updatedAt;
  m_feed.threadsToKeep.insert(id);
  wantKept();
  m_feed.report(Change::Kind::Turn, *thread, thread->turn);
}

/// Listens to a conversation that this server has loaded; what is asked there is asked again. One that is only stored
/// is never loaded just to be shown: a goal in it would begin to work.
asio::awaitable<void> CodexAgent::follow(std::string id) {
  if (m_stopped || !m_connection || !m_following.insert(id).second) co_return;
  const auto answer = co_await call("thread/resume", Object{{"threadId", id}, {"excludeTurns", true}});
  m_following.erase(id);
  if (!answer || m_stopped || !m_connection) co_return;
  const auto& record = memberOf(*answer, "thread");
  if (const auto parent = optionalTextOf(record, "parentThreadId")) {
    m_feed.adopt(id, *parent);
    co_return;
  }
  const bool isNew = m_feed.find(id) == nullptr;
  auto& thread = m_feed.add(id);
  if (isNew && m_remembered.contains(id)) thread.memory = decodeMemory(m_remembered[id]);
  takeRecord(thread, record);
  takeStartSettings(thread, *answer);
  thread.followed = true;
  m_feed.threadsToKeep.insert(id);
  m_feed.report(Change::Kind::List, thread);
  if (thread.active && !thread.turn) co_await readLastTurn(id);
}

/// Terminals of their own and one-off runs change conversations without a word to this server.
asio::awaitable<void> CodexAgent::watchOthers() {
  for (int looks = 1; !m_stopped; ++looks) {
    m_look.expires_after(kLook);
    co_await m_look.async_wait(asio::as_tuple(asio::use_awaitable));
    if (m_stopped) co_return;
    if (!m_connection) continue;
    bool hasGone = false;
    if (looks % kLooksUntilAll == 0) {
      const auto count = m_feed.threads.size();
      co_await loadAll();
      hasGone = m_feed.threads.size() != count;
    }
    if (co_await lookForChanges() || hasGone) co_await readStates();
  }
}

asio::awaitable<bool> CodexAgent::lookForChanges() {
  const auto page = co_await call(
      "thread/list",
      Object{{"limit", 50}, {"sortKey", "updated_at"}, {"sourceKinds", kSources}, {"useStateDbOnly", true}});
  if (!page) co_return false;
  bool hasChanged = false;
  for (const auto& record : listOf(*page, "data")) {
    const auto id = textOf(record, "id");
    if (id.empty() || optionalTextOf(record, "parentThreadId")) continue;
    const auto* known = m_feed.find(id);
    const bool isNew = known == nullptr || known->archived;
    const bool isOlder = !isNew && !known->followed && known->updatedAt < numberOf(record, "updatedAt").value_or(0);
    const bool isRenamed = !isNew && !known->followed && known->name != optionalTextOf(record, "name");
    if (!isNew && !isOlder && !isRenamed) continue;
    auto& thread = m_feed.add(id);
    takeRecord(thread, record);
    thread.archived = false;
    thread.begun = hasChanged = true;
    m_feed.report(isNew ? Change::Kind::List : Change::Kind::Turn, thread);
  }
  co_return hasChanged;
}

/// Many small things are kept in one go a moment later.
void CodexAgent::wantKept() {
  if (m_isKeeping || (m_feed.itemsToKeep.empty() && m_feed.threadsToKeep.empty())) return;
  m_isKeeping = true;
  asio::co_spawn(m_executor, keepSoon(), asio::detached);
}

asio::awaitable<void> CodexAgent::keepSoon() {
  co_await pause(300ms);
  m_isKeeping = false;
  if (!m_stopped) keepNow();
}

void CodexAgent::keepNow() {
  try {
    m_memory.keepItems(m_feed.itemsToKeep);
    m_feed.itemsToKeep.clear();
    for (const auto& id : std::exchange(m_feed.threadsToKeep, {})) {
      const auto* thread = m_feed.find(id);
      if (thread == nullptr) continue;
      auto text = encodeMemory(thread->memory);
      auto& kept = m_remembered[id];
      if (kept == text) continue;
      m_memory.keepThread(id, text);
      kept = std::move(text);
    }
  } catch (const std::exception& error) {
    log(std::string("what the agent forgets could not be kept: ") + error.what());
  }
}

}  // namespace varnel::agent::codex
