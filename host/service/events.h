// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/wire/event.h"
#include "core/wire/session.h"
#include "host/agent/agent.h"
#include "host/service/clock.h"
#include "host/service/coalescer.h"
#include "host/service/failure.h"
#include "host/service/subscription.h"
#include "host/store/event_log.h"
#include "host/store/tracking.h"

namespace varnel::service {

/// What the phones are told: turns the agent's changes into events, keeps them in the log and hands them to every
/// stream. Runs on the bridge's thread and lives as long as its io_context runs.
class Events {
 public:
  /// A stream that is further behind reads everything anew, which is less than so many reloads.
  static constexpr std::int64_t kMostBehind = 200;
  /// Conversations changed within so many seconds are named after a snapshot.
  static constexpr double kRecentSeconds = 600;
  /// What could not be written is tried again after so long.
  static constexpr std::chrono::milliseconds kRetry{1000};

  Events(const boost::asio::any_io_executor& executor, store::EventLog& log, store::Tracking& tracking,
         agent::Agent& agent, Clock clock);

  /// Tells what is noted, until `stop`.
  boost::asio::awaitable<void> run();
  /// Ends `run` and every stream.
  void stop();

  /// Something changed; told soon. `Lost` asks every phone to read everything anew.
  void note(const agent::Change& change);

  /// A stream that goes on after a sequence number. What cannot be resumed exactly begins with "snapshot.required" and
  /// the names of the conversations that are active or changed lately; what was told before is then not told again.
  Task<std::shared_ptr<Subscription>> subscribe(std::int64_t after, std::string deviceId);
  /// Streams of a device, the dead ones not counted.
  [[nodiscard]] std::size_t countStreams(const std::string& deviceId);
  void closeStreams(const std::string& deviceId);

 private:
  using Sessions = std::vector<wire::SessionSummary>;
  boost::asio::awaitable<void> pause();
  boost::asio::awaitable<void> tellDue();
  boost::asio::awaitable<void> tellEverythingChanged();
  void tell(const Coalescer::Due& due, const Sessions& sessions);
  void publish(wire::LiveEvent event);
  [[nodiscard]] bool canResume(std::int64_t after) const;
  std::vector<std::string> snapshot(const Sessions& sessions);
  [[nodiscard]] wire::LiveEvent naming(const wire::SessionSummary& session) const;
  [[nodiscard]] wire::LiveEvent activity(const wire::SessionSummary& session, bool tracked) const;
  [[nodiscard]] std::vector<const wire::SessionSummary*> recent(const Sessions& sessions) const;
  bool noteFace(const wire::SessionSummary& session);
  void forgetGone(const Sessions& sessions);
  void rememberTurn(const wire::SessionSummary& session, const std::optional<std::string>& turnId);

  boost::asio::any_io_executor m_executor;
  store::EventLog& m_log;
  store::Tracking& m_tracking;
  agent::Agent& m_agent;
  Clock m_clock;
  Coalescer m_coalescer;
  boost::asio::steady_timer m_wake;
  bool m_lost = false;
  bool m_stopped = false;
  std::vector<std::shared_ptr<Subscription>> m_streams;
  std::map<std::string, std::string> m_lastTurns;  ///< the turn that was last seen of a conversation
  std::map<std::string, std::size_t> m_faces;      ///< what the list shows of a conversation, as last told
};

}  // namespace varnel::service
