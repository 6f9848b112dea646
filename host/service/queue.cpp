// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/queue.h"

#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>

#include "core/wire/codec.h"
#include "host/service/events.h"
#include "host/service/log.h"

namespace varnel::service {

namespace asio = boost::asio;
using Kind = Failure::Kind;

namespace {

wire::MessageBody bodyOf(const store::Queue::Entry& entry) {
  return wire::decode<wire::MessageBody>(entry.body).value_or(wire::MessageBody{});
}

wire::QueuedMessage shown(const store::Queue::Entry& entry) {
  auto body = bodyOf(entry);
  return {.id = entry.id,
          .createdAt = entry.createdAt,
          .text = std::move(body.text),
          .attachments = std::move(body.attachments),
          .failure = entry.failure};
}

/// The agent's own copy of a message names the id that it was sent with.
bool isEchoOf(const wire::TranscriptItem& item, const std::string& messageId) {
  if (item.role != "user" || !item.detail) return false;
  const auto detail = item.detail->value();
  const auto* client = detail.member("clientId");
  return client != nullptr && client->string() != nullptr && *client->string() == messageId;
}

/// The agent has made up its mind: another attempt would end the same.
bool isFinal(Kind kind) {
  return kind == Kind::Invalid || kind == Kind::NotFound || kind == Kind::Conflict;
}

}  // namespace

Queue::Queue(const asio::any_io_executor& executor, Parts parts, Clock clock)
    : m_parts(parts), m_clock(std::move(clock)), m_wake(executor, asio::steady_timer::time_point::max()) {}

asio::awaitable<void> Queue::run() {
  m_sessions = m_parts.store.sessions();
  while (!m_stopped) {
    bool isDone = true;
    if (std::exchange(m_due, false) && !m_sessions.empty()) {
      try {
        isDone = co_await deliverDue();
      } catch (const std::exception& error) {
        log(std::string("queued messages wait: ") + error.what());
        isDone = false;
      }
    }
    if (m_due || m_stopped) continue;
    if (isDone) {
      m_wake.expires_at(asio::steady_timer::time_point::max());
    } else {
      m_wake.expires_after(kRetry);
    }
    const auto [error] = co_await m_wake.async_wait(asio::as_tuple(asio::use_awaitable));
    if (!error) m_due = true;
  }
}

void Queue::stop() {
  m_stopped = true;
  m_wake.cancel();
}

void Queue::note(const agent::Change& change) {
  if (m_sessions.empty() || (change.sessionId && !m_sessions.contains(*change.sessionId))) return;
  m_due = true;
  m_wake.cancel();
}

void Queue::changed(const std::string& sessionId) {
  m_sessions = m_parts.store.sessions();
  m_parts.events.note({.kind = agent::Change::Kind::Settings, .sessionId = sessionId});
}

/// False when something is left that nobody will tell of.
asio::awaitable<bool> Queue::deliverDue() {
  const auto sessions = co_await m_parts.agent.sessions();
  if (!sessions) co_return false;
  bool isDone = true;
  for (const auto& session : *sessions) {
    const bool isFree = !session.active && !session.currentTurnId;
    if (m_stopped || !isFree || !m_sessions.contains(session.id)) continue;
    if (!co_await deliverNext(session.id)) isDone = false;
  }
  co_return isDone;
}

asio::awaitable<bool> Queue::deliverNext(std::string sessionId) {
  for (const auto& entry : m_parts.store.of(sessionId)) {
    if (entry.failure) continue;
    m_sending = entry.id;
    bool isDone = false;
    try {
      isDone = co_await deliver(entry);
    } catch (const std::exception& error) {
      log(std::string("a queued message waits: ") + error.what());
    }
    m_sending.reset();
    changed(sessionId);
    co_return isDone;
  }
  co_return true;
}

asio::awaitable<bool> Queue::deliver(store::Queue::Entry entry) {
  if (entry.attempted) {
    const auto taken = co_await wasTaken(entry);
    if (!taken) co_return false;
    if (*taken) {
      m_parts.store.remove(entry.id);
      co_return true;
    }
  }
  m_parts.store.markAttempted(entry.id, true);
  const auto sent = co_await m_parts.commands.sendMessage(entry.sessionId, bodyOf(entry), entry.id);
  if (sent) {
    m_parts.store.remove(entry.id);
    co_return true;
  }
  if (!isFinal(sent.error().kind)) co_return false;
  m_parts.store.fail(entry.id, sent.error().text);
  // Others behind it are not to wait.
  m_due = true;
  co_return true;
}

/// Whether the agent has the message; nothing when it cannot say.
asio::awaitable<std::optional<bool>> Queue::wasTaken(store::Queue::Entry entry) {
  const auto conversation = co_await m_parts.agent.conversation(entry.sessionId);
  if (!conversation) co_return std::nullopt;
  co_return std::ranges::any_of(conversation->items, [&](const auto& item) { return isEchoOf(item, entry.id); });
}

Task<wire::QueuedMessage> Queue::add(std::string sessionId, wire::MessageBody body, std::string messageId) {
  if (const auto fits = co_await m_parts.commands.checkMessage(sessionId, body); !fits) {
    co_return std::unexpected(fits.error());
  }
  const auto waiting = m_parts.store.of(sessionId);
  // The same attempt once more: what it asked for is done.
  const auto same = std::ranges::find(waiting, messageId, &store::Queue::Entry::id);
  if (same != waiting.end()) co_return shown(*same);
  if (waiting.size() >= kLongest) {
    co_return refuse(Kind::TooManyRequests, "Too many messages wait in this conversation.");
  }
  const auto text = wire::encode(body);
  if (!text) co_return refuse(Kind::Invalid, "The message cannot be kept: " + text.error().message());
  store::Queue::Entry entry{.id = std::move(messageId),
                            .sessionId = sessionId,
                            .body = *text,
                            .createdAt = m_clock.wall(),
                            .attempted = false,
                            .failure = std::nullopt};
  m_parts.store.add(entry);
  m_parts.attachments.markWaiting(body.attachments);
  changed(sessionId);
  m_due = true;
  m_wake.cancel();
  co_return shown(entry);
}

Task<wire::QueueEnvelope> Queue::remove(std::string sessionId, std::optional<std::string> messageId) {
  wire::QueueEnvelope removed;
  for (const auto& entry : m_parts.store.of(sessionId)) {
    if (messageId && entry.id != *messageId) continue;
    if (entry.id == m_sending || (entry.attempted && !entry.failure)) {
      if (messageId) co_return refuse(Kind::Conflict, "This message is being sent.");
      continue;
    }
    m_parts.store.remove(entry.id);
    auto message = shown(entry);
    m_parts.attachments.markUnsent(message.attachments);
    removed.queued.push_back(std::move(message));
  }
  if (messageId && removed.queued.empty()) co_return refuse(Kind::NotFound, "This message does not wait any more.");
  changed(sessionId);
  co_return removed;
}

std::vector<wire::QueuedMessage> Queue::of(std::string_view sessionId) const {
  std::vector<wire::QueuedMessage> messages;
  for (const auto& entry : m_parts.store.of(sessionId)) messages.push_back(shown(entry));
  return messages;
}

}  // namespace varnel::service
