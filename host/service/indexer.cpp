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

/// A message, or what a tool was asked and said.
std::string textOf(const wire::TranscriptItem& item) {
  std::string text = item.title.value_or("");
  if (!text.empty() && item.text) text += "\n";
  text += item.text.value_or("");
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

store::SearchIndex::Conversation rowOf(const auto& session, double updatedAt, bool archived) {
  return {.id = session.id, .name = session.name, .cwd = session.cwd, .updatedAt = updatedAt, .archived = archived};
}

}  // namespace

Indexer::Indexer(asio::any_io_executor executor, store::SearchIndex& index, agent::Agent& agent)
    : m_executor(executor), m_index(index), m_agent(agent), m_wake(executor), m_done(executor) {}

asio::awaitable<void> Indexer::run() {
  while (!m_stopped) {
    if (!m_everything && m_changed.empty()) {
      m_wake.expires_at(asio::steady_timer::time_point::max());
      co_await m_wake.async_wait(asio::as_tuple(asio::use_awaitable));
      continue;
    }
    if (!m_everything) co_await settle();
    m_busy = true;
    try {
      co_await work();
    } catch (const std::exception& error) {
      log(std::string("the search index could not be kept: ") + error.what());
    }
    m_busy = false;
    m_urgent = false;
    m_done.cancel();
  }
}

void Indexer::stop() {
  m_stopped = true;
  m_wake.cancel();
  m_done.cancel();
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
  while (!m_stopped && (m_busy || m_everything || !m_changed.empty())) {
    if (asio::steady_timer::clock_type::now() >= end) co_return;
    m_urgent = true;
    m_wake.cancel();
    // Several searches may wait on the one timer: each sets the same far end and looks again.
    m_done.expires_at(end);
    co_await m_done.async_wait(asio::as_tuple(asio::use_awaitable));
  }
}

/// Waits for a changing conversation to come to rest, unless somebody is searching.
asio::awaitable<void> Indexer::settle() {
  const auto end = asio::steady_timer::clock_type::now() + kSettle;
  while (!m_urgent && !m_stopped && asio::steady_timer::clock_type::now() < end) {
    m_wake.expires_at(end);
    co_await m_wake.async_wait(asio::as_tuple(asio::use_awaitable));
  }
}

asio::awaitable<void> Indexer::work() {
  const bool everything = std::exchange(m_everything, false);
  const auto changed = std::exchange(m_changed, {});
  const auto all = co_await listAll();
  if (everything) {
    std::unordered_set<std::string> ids;
    for (const auto& conversation : all) ids.insert(conversation.id);
    m_index.keepOnly(ids);
  }
  std::vector<Reading> waiting;
  std::size_t looked = 0;
  for (const auto& conversation : all) {
    const bool isWanted = changed.contains(conversation.id) || (everything && !m_index.isCurrent(conversation));
    std::optional<agent::Conversation> read;
    if (isWanted) {
      auto answer = co_await m_agent.conversation(conversation.id);
      if (answer) read = std::move(*answer);
    }
    if (m_stopped) co_return;
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
  writeSmall(std::move(waiting));
}

asio::awaitable<Indexer::Conversations> Indexer::listAll() {
  Conversations all;
  const auto sessions = co_await m_agent.sessions();
  const auto archived = co_await m_agent.archived();
  if (sessions) {
    for (const auto& session : *sessions) all.push_back(rowOf(session, session.updatedAt, false));
  }
  if (archived) {
    for (const auto& session : *archived) all.push_back(rowOf(session, session.updatedAt.value_or(0), true));
  }
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
void Indexer::writeSmall(std::vector<Reading> readings) {
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
