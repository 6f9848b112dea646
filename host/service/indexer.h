// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/agent/agent.h"
#include "host/store/search_index.h"

namespace varnel::service {

/// Keeps the search index in step with the agent: everything once at the start, later what has changed. Works in small
/// slices on the bridge's thread, so that nobody waits for it; lives as long as its io_context runs.
class Indexer {
 public:
  /// A conversation that keeps changing is read again after so long.
  static constexpr std::chrono::milliseconds kSettle{1500};
  /// How long a search waits for the index at most.
  static constexpr std::chrono::seconds kPatience{10};
  /// What the agent did not tell, or the disk did not take, is tried again after so long.
  static constexpr std::chrono::milliseconds kRetry{2000};

  Indexer(const boost::asio::any_io_executor& executor, store::SearchIndex& index, agent::Agent& agent);

  boost::asio::awaitable<void> run();
  void stop();
  void note(const agent::Change& change);
  /// Returns when what is known to have changed has been read, cannot be read for now, or patience ends.
  boost::asio::awaitable<void> catchUp();

 private:
  using Conversations = std::vector<store::SearchIndex::Conversation>;
  boost::asio::awaitable<void> rest(std::chrono::milliseconds time, bool evenWhenUrgent);
  boost::asio::awaitable<bool> attempt();
  boost::asio::awaitable<bool> work(bool everything, std::set<std::string> changed);
  boost::asio::awaitable<agent::Result<Conversations>> listAll();
  /// A conversation that has been read and waits to be written.
  struct Reading {
    store::SearchIndex::Conversation conversation;
    std::vector<store::SearchIndex::Item> items;
  };
  boost::asio::awaitable<void> writeLarge(Reading reading);
  void writeSmall(const std::vector<Reading>& readings);
  boost::asio::awaitable<void> breathe();
  void wakeSearches();

  boost::asio::any_io_executor m_executor;
  store::SearchIndex& m_index;
  agent::Agent& m_agent;
  boost::asio::steady_timer m_wake;                                    ///< cancelled when there is something to do
  std::vector<std::shared_ptr<boost::asio::steady_timer>> m_searches;  ///< cancelled when all is done
  bool m_everything = true;
  bool m_urgent = false;
  bool m_busy = false;
  bool m_failing = false;  ///< what is left to do waits for the next attempt
  bool m_stopped = false;
  std::set<std::string> m_changed;
};

}  // namespace varnel::service
