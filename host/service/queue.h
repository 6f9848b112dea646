// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/wire/bodies.h"
#include "core/wire/queue.h"
#include "host/agent/agent.h"
#include "host/service/clock.h"
#include "host/service/commands.h"
#include "host/service/failure.h"
#include "host/store/queue.h"

namespace varnel::service {

/// Messages that are sent when the running turn has ended, however it ends: one a turn, in order, each once, whether or
/// not a phone is awake and whatever happens to the bridge in between. Runs on the bridge's thread and lives as long as
/// its io_context runs.
class Queue {
 public:
  /// What could not be handed over is tried again after so long.
  static constexpr std::chrono::milliseconds kRetry{2000};
  /// Messages of one conversation that may wait.
  static constexpr std::size_t kLongest = 100;

  struct Parts {
    store::Queue& store;
    agent::Agent& agent;
    Commands& commands;
    Events& events;
    Attachments& attachments;
  };
  Queue(const boost::asio::any_io_executor& executor, Parts parts, Clock clock);

  boost::asio::awaitable<void> run();
  void stop();
  void note(const agent::Change& change);

  /// Refuses what could not be sent now. `messageId` is the same for a repeated attempt.
  Task<wire::QueuedMessage> add(std::string sessionId, wire::MessageBody body, std::string messageId);
  /// What was taken back: one message, or all that wait. Conflict when it is on its way.
  Task<wire::QueueEnvelope> remove(std::string sessionId, std::optional<std::string> messageId);
  /// In the order in which they go.
  [[nodiscard]] std::vector<wire::QueuedMessage> of(std::string_view sessionId) const;

 private:
  boost::asio::awaitable<bool> deliverDue();
  boost::asio::awaitable<bool> deliverNext(std::string sessionId);
  boost::asio::awaitable<bool> deliver(store::Queue::Entry entry);
  boost::asio::awaitable<std::optional<bool>> wasTaken(store::Queue::Entry entry);
  void changed(const std::string& sessionId);

  Parts m_parts;
  Clock m_clock;
  boost::asio::steady_timer m_wake;  ///< cancelled when there may be something to send
  std::set<std::string> m_sessions;  ///< with messages that wait
  std::optional<std::string> m_sending;
  bool m_due = true;
  bool m_stopped = false;
};

}  // namespace varnel::service
