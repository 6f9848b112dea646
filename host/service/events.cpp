// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/events.h"

#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>

#include "core/wire/codec.h"
#include "host/service/log.h"

namespace varnel::service {

namespace asio = boost::asio;
using Kind = agent::Change::Kind;

namespace {

wire::LiveEvent plainEvent(std::string type, std::optional<std::string> sessionId, std::optional<std::string> turnId) {
  return {.sequence = 0,
          .type = std::move(type),
          .timestamp = 0,
          .sessionId = std::move(sessionId),
          .turnId = std::move(turnId),
          .payload = {}};
}

/// The text of an event, or nothing when the phone could not read it: then it is logged and not sent.
std::optional<std::string> checkedEvent(const wire::LiveEvent& event) {
  auto text = wire::encode(event);
  if (!text) {
    log("event " + event.type + " not sent: " + text.error().message());
    return std::nullopt;
  }
  if (auto read = wire::decode<wire::LiveEvent>(*text); !read) {
    log("event " + event.type + " not sent: " + read.error().message());
    return std::nullopt;
  }
  return std::move(*text);
}

const wire::SessionSummary* findSession(const std::vector<wire::SessionSummary>& sessions, const std::string& id) {
  const auto found = std::ranges::find(sessions, id, &wire::SessionSummary::id);
  return found == sessions.end() ? nullptr : &*found;
}

}  // namespace

Events::Events(const asio::any_io_executor& executor, store::EventLog& log, store::Tracking& tracking,
               agent::Agent& agent, Clock clock)
    : m_executor(executor),
      m_log(log),
      m_tracking(tracking),
      m_agent(agent),
      m_clock(std::move(clock)),
      m_wake(executor, asio::steady_timer::time_point::max()) {}

asio::awaitable<void> Events::run() {
  while (!m_stopped) {
    const auto next = m_coalescer.next();
    if (!m_lost && (!next || *next > m_clock.elapsed())) {
      if (next) {
        m_wake.expires_after(*next - m_clock.elapsed());
      } else {
        m_wake.expires_at(asio::steady_timer::time_point::max());
      }
      co_await m_wake.async_wait(asio::as_tuple(asio::use_awaitable));
      continue;
    }
    try {
      co_await tellDue();
      continue;
    } catch (const std::exception& error) {
      log(std::string("events could not be kept: ") + error.what());
    }
    // Nobody knows which were told: once it works again, everything is read anew.
    m_lost = true;
    co_await pause();
  }
}

asio::awaitable<void> Events::pause() {
  const auto end = asio::steady_timer::clock_type::now() + kRetry;
  while (!m_stopped && asio::steady_timer::clock_type::now() < end) {
    m_wake.expires_at(end);
    co_await m_wake.async_wait(asio::as_tuple(asio::use_awaitable));
  }
}

void Events::stop() {
  m_stopped = true;
  m_wake.cancel();
  for (const auto& stream : m_streams) stream->close();
  m_streams.clear();
}

void Events::note(const agent::Change& change) {
  if (change.kind == Kind::Lost) {
    m_lost = true;
  } else {
    m_coalescer.note(change);
  }
  m_wake.cancel();
}

asio::awaitable<void> Events::tellDue() {
  if (std::exchange(m_lost, false)) co_await tellEverythingChanged();
  const auto due = m_coalescer.take(m_clock.elapsed());
  if (due.empty()) co_return;
  const auto sessions = co_await m_agent.sessions();
  if (m_stopped) co_return;
  // Without the list, the conversations are named all the same.
  for (const auto& one : due) tell(one, sessions ? *sessions : Sessions());
  if (sessions) forgetGone(*sessions);
}

asio::awaitable<void> Events::tellEverythingChanged() {
  publish(plainEvent("snapshot.required", std::nullopt, std::nullopt));
  const auto sessions = co_await m_agent.sessions();
  if (!sessions || m_stopped) co_return;
  for (const auto* session : recent(*sessions)) publish(naming(*session));
}

void Events::tell(const Coalescer::Due& due, const Sessions& sessions) {
  if (!due.sessionId) {
    publish(plainEvent("usage.updated", std::nullopt, std::nullopt));
    return;
  }
  const auto* session = findSession(sessions, *due.sessionId);
  const bool onlyList = due.kinds == std::set{Kind::List};
  if (session == nullptr || onlyList) {
    publish(plainEvent("tracking.changed", due.sessionId, due.turnId));
    return;
  }
  rememberTurn(*session, due.turnId);
  const bool looksDifferent = noteFace(*session);
  const bool onlyItems = due.kinds == std::set{Kind::Item};
  if (onlyItems && !looksDifferent) {
    publish(plainEvent("item.updated", due.sessionId, due.turnId));
  } else {
    publish(activity(*session, m_tracking.of(session->id).tracked));
  }
}

void Events::publish(wire::LiveEvent event) {
  event.sequence = m_log.head() + 1;
  event.timestamp = m_clock.wall();
  auto payload = event.payload.value();
  if (const auto content = payload.find("content"); content != payload.end()) {
    (*content->second.object())["sequence"] = event.sequence;
    event.payload = payload;
  }
  const auto text = checkedEvent(event);
  if (!text) return;
  m_log.append(event.sequence, *text);
  std::erase_if(m_streams, [](const auto& stream) { return stream->isClosed(); });
  for (const auto& stream : m_streams) stream->push(*text);
}

Task<std::shared_ptr<Subscription>> Events::subscribe(std::int64_t after, std::string deviceId) {
  const auto sessions = co_await m_agent.sessions();
  if (!sessions) co_return refusedBy(sessions.error());
  if (m_stopped) co_return refuse(Failure::Kind::Unavailable, "The bridge is stopping.");
  // From here to the end nothing suspends: no event falls between the backlog and the live ones.
  const auto stream = std::make_shared<Subscription>(m_executor, std::move(deviceId),
                                                     canResume(after) ? m_log.after(after) : snapshot(*sessions));
  m_streams.push_back(stream);
  co_return stream;
}

bool Events::canResume(std::int64_t after) const {
  if (after <= 0 || after > m_log.head() || after < m_log.trimmed()) return false;
  if (m_log.isInsideSnapshot(after)) return false;
  return m_log.countAfter(after) <= kMostBehind;
}

std::vector<std::string> Events::snapshot(const Sessions& sessions) {
  std::vector<wire::LiveEvent> events{plainEvent("snapshot.required", std::nullopt, std::nullopt)};
  for (const auto* session : recent(sessions)) events.push_back(naming(*session));
  std::vector<std::string> texts;
  std::int64_t sequence = m_log.reserve(static_cast<std::int64_t>(events.size()));
  for (auto& event : events) {
    event.sequence = sequence++;
    event.timestamp = m_clock.wall();
    if (auto text = checkedEvent(event)) texts.push_back(std::move(*text));
  }
  return texts;
}

wire::LiveEvent Events::naming(const wire::SessionSummary& session) const {
  if (m_tracking.of(session.id).tracked) return activity(session, true);
  return plainEvent("turn.updated", session.id, session.currentTurnId);
}

wire::LiveEvent Events::activity(const wire::SessionSummary& session, bool tracked) const {
  auto event = plainEvent("activity.updated", session.id, session.currentTurnId);
  if (const auto turn = m_lastTurns.find(session.id); !event.turnId && turn != m_lastTurns.end()) {
    event.turnId = turn->second;
  }
  event.payload =
      json::JSONValue::Object{{"tracked", tracked},
                              {"project", session.project},
                              {"content", json::JSONValue::Object{{"state", std::string(json::nameOf(session.state))},
                                                                  {"message", session.latestCommentary},
                                                                  {"updatedAt", session.updatedAt},
                                                                  {"sequence", m_log.head()}}}};
  return event;
}

std::vector<const wire::SessionSummary*> Events::recent(const Sessions& sessions) const {
  std::vector<const wire::SessionSummary*> found;
  const double since = m_clock.wall() - kRecentSeconds;
  for (const auto& session : sessions) {
    if (session.active || session.updatedAt >= since) found.push_back(&session);
  }
  return found;
}

bool Events::noteFace(const wire::SessionSummary& session) {
  wire::SessionSummary face = session;
  face.updatedAt = 0;
  const std::size_t hash = wire::hashOf(face);
  const auto [entry, isNew] = m_faces.try_emplace(session.id, hash);
  return isNew || std::exchange(entry->second, hash) != hash;
}

void Events::rememberTurn(const wire::SessionSummary& session, const std::optional<std::string>& turnId) {
  if (session.currentTurnId) {
    m_lastTurns[session.id] = *session.currentTurnId;
  } else if (turnId) {
    m_lastTurns[session.id] = *turnId;
  }
}

/// What is remembered of conversations that are archived or gone is let go of.
void Events::forgetGone(const Sessions& sessions) {
  if (std::max(m_faces.size(), m_lastTurns.size()) <= sessions.size()) return;
  std::set<std::string> ids;
  for (const auto& session : sessions) ids.insert(session.id);
  const auto isGone = [&](const auto& entry) { return !ids.contains(entry.first); };
  std::erase_if(m_faces, isGone);
  std::erase_if(m_lastTurns, isGone);
}

std::size_t Events::countStreams(const std::string& deviceId) {
  std::erase_if(m_streams, [](const auto& stream) { return stream->isClosed(); });
  return static_cast<std::size_t>(std::ranges::count(m_streams, deviceId, &Subscription::deviceId));
}

void Events::closeStreams(const std::string& deviceId) {
  for (const auto& stream : m_streams) {
    if (stream->deviceId() == deviceId) stream->close();
  }
}

}  // namespace varnel::service
