// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/indexer.h"

#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <unordered_set>

#include "host/service/log.h"
#include "host/store/fold.h"

namespace varnel::service {

namespace asio = boost::asio;

namespace {

constexpr std::size_t kSlice = 100;
constexpr std::size_t kTextBytes = 256UL * 1024;

void append(std::string& text, std::string_view more) {
  if (!text.empty() && !more.empty()) text += '\n';
  text += more;
}

void append(std::string& text, const json::JSONValue* more) {
  if (more != nullptr && more->string() != nullptr) append(text, *more->string());
}

/// What a tool said: output, differences, results.
void appendDetail(std::string& text, const json::JSONValue& detail) {
  append(text, detail.member("aggregatedOutput"));
  const auto* changes = detail.member("changes");
  if (changes != nullptr && changes->array() != nullptr) {
    for (const auto& change : *changes->array()) append(text, change.member("diff"));
  }
  const auto* result = detail.member("result");
  const auto* content = result == nullptr ? nullptr : result->member("content");
  if (content == nullptr || content->array() == nullptr) return;
  for (const auto& part : *content->array()) append(text, part.member("text"));
}

/// A message, or what a tool was asked and said.
std::string textOf(const wire::TranscriptItem& item) {
  std::string text = item.title.value_or("");
  append(text, item.text.value_or(""));
  if (!item.role && item.detail) appendDetail(text, item.detail->value());
  if (text.size() > kTextBytes) text = store::firstCharacters(text, kTextBytes / 4);
  return text;
}

/// The turn that an item says it belongs to, or else the message that began it.
std::string turnOf(const wire::TranscriptItem& item, const std::string& lastMessage) {
  if (item.detail && item.detail->text().contains("\"turnId\"")) {
    const auto detail = item.detail->value();
    const auto* turn = detail.member("turnId");
    if (turn != nullptr && turn->string() != nullptr) return *turn->string();
  }
  return lastMessage;
}

std::vector<store::SearchIndex::Item> itemsOf(const agent::Conversation& conversation) {
  std::vector<store::SearchIndex::Item> items;
  std::string lastMessage;
  std::int64_t position = 0;
  for (const auto& item : conversation.items) {
    if (item.type == "userMessage") lastMessage = item.id;
    items.push_back({.id = item.id, .turnId = turnOf(item, lastMessage), .position = position++, .text = textOf(item)});
  }
  return items;
}

std::unordered_set<std::string> idsOf(const std::vector<store::SearchIndex::Conversation>& conversations) {
  std::unordered_set<std::string> ids;
  for (const auto& conversation : conversations) ids.insert(conversation.id);
  return ids;
}

store::SearchIndex::Conversation rowOf(const auto& session, double updatedAt, bool archived) {
  return {.id = session.id, .name = session.name, .cwd = session.cwd, .updatedAt = updatedAt, .archived = archived};
}

}  // namespace

Indexer::Indexer(const asio::any_io_executor& executor, store::SearchIndex& index, agent::Agent& agent)
    : m_executor(executor), m_index(index), m_agent(agent), m_wake(executor) {}

asio::awaitable<void> Indexer::run() {
  while (!m_stopped) {
    if (!m_everything && m_changed.empty()) {
      m_wake.expires_at(asio::steady_timer::time_point::max());
      co_await m_wake.async_wait(asio::as_tuple(asio::use_awaitable));
      continue;
    }
    // A changing conversation comes to rest first, unless somebody is searching.
    if (!m_everything) co_await rest(kSettle, false);
    m_busy = true;
    m_failing = false;
    m_failing = !co_await attempt();
    m_busy = false;
    m_urgent = false;
    wakeSearches();
    if (m_failing) co_await rest(kRetry, true);
  }
}

/// False when something is left to do, and noted as such.
asio::awaitable<bool> Indexer::attempt() {
  const bool everything = std::exchange(m_everything, false);
  auto changed = std::exchange(m_changed, {});
  try {
    if (co_await work(everything, changed)) co_return true;
  } catch (const std::exception& error) {
    log(std::string("the search index could not be kept: ") + error.what());
  }
  m_everything = m_everything || everything;
  m_changed.merge(changed);
  co_return false;
}

void Indexer::wakeSearches() {
  for (const auto& search : std::exchange(m_searches, {})) search->cancel();
}

void Indexer::stop() {
  m_stopped = true;
  m_wake.cancel();
  wakeSearches();
}

void Indexer::note(const agent::Change& change) {
  if (change.kind == agent::Change::Kind::Lost) {
    m_everything = true;
  } else if (change.sessionId) {
    m_changed.insert(*change.sessionId);
  }
  m_wake.cancel();
}

asio::awaitable<void> Indexer::catchUp() {
  const auto end = asio::steady_timer::clock_type::now() + kPatience;
  while (!m_stopped && !m_failing && (m_busy || m_everything || !m_changed.empty())) {
    if (asio::steady_timer::clock_type::now() >= end) co_return;
    m_urgent = true;
    m_wake.cancel();
    const auto done = std::make_shared<asio::steady_timer>(m_executor, end);
    m_searches.push_back(done);
    co_await done->async_wait(asio::as_tuple(asio::use_awaitable));
  }
}

asio::awaitable<void> Indexer::rest(std::chrono::milliseconds time, bool evenWhenUrgent) {
  const auto end = asio::steady_timer::clock_type::now() + time;
  while ((evenWhenUrgent || !m_urgent) && !m_stopped && asio::steady_timer::clock_type::now() < end) {
    m_wake.expires_at(end);
    co_await m_wake.async_wait(asio::as_tuple(asio::use_awaitable));
  }
}

/// False when the agent did not tell all.
asio::awaitable<bool> Indexer::work(bool everything, std::set<std::string> changed) {
  const auto listed = co_await listAll();
  if (!listed) {
    log("the search index waits for the agent: " + listed.error().text);
    co_return false;
  }
  const auto& all = *listed;
  if (everything) m_index.keepOnly(idsOf(all));
  bool isComplete = true;
  std::vector<Reading> waiting;
  std::size_t looked = 0;
  for (const auto& conversation : all) {
    const bool isWanted = changed.contains(conversation.id) || (everything && !m_index.isCurrent(conversation));
    std::optional<agent::Conversation> read;
    if (isWanted) {
      auto answer = co_await m_agent.conversation(conversation.id);
      if (answer) {
        read = std::move(*answer);
      } else if (answer.error().kind != agent::AgentError::Kind::NotFound) {
        log("the search index waits for a conversation: " + answer.error().text);
        isComplete = false;
      }
    }
    if (m_stopped) co_return false;
    if (read && read->items.size() > kSlice) {
      Reading reading{.conversation = conversation, .items = itemsOf(*read)};
      co_await writeLarge(std::move(reading));
    } else if (read) {
      waiting.push_back({.conversation = conversation, .items = itemsOf(*read)});
    }
    if (++looked % kSlice != 0) continue;
    writeSmall(std::exchange(waiting, {}));
    co_await breathe();
  }
  writeSmall(waiting);
  co_return isComplete;
}

asio::awaitable<agent::Result<Indexer::Conversations>> Indexer::listAll() {
  const auto sessions = co_await m_agent.sessions();
  if (!sessions) co_return std::unexpected(sessions.error());
  const auto archived = co_await m_agent.archived();
  if (!archived) co_return std::unexpected(archived.error());
  Conversations all;
  for (const auto& session : *sessions) all.push_back(rowOf(session, session.updatedAt, false));
  for (const auto& session : *archived) all.push_back(rowOf(session, session.updatedAt.value_or(0), true));
  co_return all;
}

/// Slice by slice, each written for itself; a stop in between leaves it to be read again.
asio::awaitable<void> Indexer::writeLarge(Reading reading) {
  std::unordered_set<std::string> ids;
  m_index.begin(reading.conversation);
  for (std::size_t start = 0; start < reading.items.size(); start += kSlice) {
    const auto slice = std::span(reading.items).subspan(start, std::min(kSlice, reading.items.size() - start));
    m_index.put(reading.conversation.id, slice);
    for (const auto& item : slice) ids.insert(item.id);
    co_await breathe();
    if (m_stopped) co_return;
  }
  m_index.finish(reading.conversation, ids);
}

/// Many in one commit, since a commit waits for the disk.
void Indexer::writeSmall(const std::vector<Reading>& readings) {
  if (readings.empty()) return;
  auto batch = m_index.batch();
  for (const auto& reading : readings) {
    std::unordered_set<std::string> ids;
    for (const auto& item : reading.items) ids.insert(item.id);
    m_index.begin(reading.conversation);
    m_index.put(reading.conversation.id, reading.items);
    m_index.finish(reading.conversation, ids);
  }
  batch.commit();
}

/// Lets everybody else have the thread.
asio::awaitable<void> Indexer::breathe() {
  co_await asio::post(m_executor, asio::use_awaitable);
}

}  // namespace varnel::service
