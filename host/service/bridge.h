// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <expected>
#include <optional>
#include <string>

#include "host/agent/agent.h"
#include "host/service/attachments.h"
#include "host/service/clock.h"
#include "host/service/commands.h"
#include "host/service/conversations.h"
#include "host/service/events.h"
#include "host/service/indexer.h"
#include "host/service/pairing.h"
#include "host/service/queue.h"
#include "host/service/repeats.h"
#include "host/service/search.h"
#include "host/store/store.h"

namespace varnel::service {

/// The bridge without its sockets: every part once, in the order in which they need each other. Store and agent belong
/// to the caller and outlive it, as it outlives the io_context's last handler. Everything happens on one thread.
class Bridge {
 public:
  Bridge(const boost::asio::any_io_executor& executor, store::Store& store, agent::Agent& agent, Clock time,
         Policy policy = {});

  /// Starts the agent and what goes on by itself. Why the agent would not start.
  boost::asio::awaitable<std::expected<void, std::string>> start();
  void stop();

  /// The device that a token belongs to.
  [[nodiscard]] std::optional<store::Device> deviceOf(std::string_view token);
  [[nodiscard]] bool isPaired(const std::string& deviceId) const;
  /// From the next request on, and for its streams at once.
  bool revoke(const std::string& deviceId);

 private:
  boost::asio::awaitable<void> sweepHourly();

  boost::asio::any_io_executor m_executor;
  store::Store& m_store;
  agent::Agent& m_agent;
  boost::asio::steady_timer m_sweep;
  bool m_stopped = false;

 public:
  const Clock clock;
  Events events;
  Pairing pairing;
  Repeats repeats;
  Attachments attachments;
  Commands commands;
  Queue queue;
  Conversations conversations;
  Indexer indexer;
  Search search;
};

}  // namespace varnel::service
