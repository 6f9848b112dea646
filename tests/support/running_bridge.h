// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "host/http/server.h"
#include "host/service/bridge.h"
#include "host/store/store.h"
#include "tests/support/fake_agent.h"
#include "tests/support/temporary_directory.h"

namespace varnel::support {

/// A whole bridge on a free loopback port, on a thread of its own, with a database in memory and a clock that can be
/// put forward. Everything but `port` and `advance` goes through `run`.
class RunningBridge {
 public:
  struct Parts {
    service::Bridge& bridge;
    store::Store& store;
    FakeAgent& agent;
    http::Server& server;
  };
  using MakeAgent = std::function<std::unique_ptr<agent::Agent>(boost::asio::any_io_executor)>;

  explicit RunningBridge(http::Limits limits = {}, MakeAgent makeAgent = {}, service::Policy policy = {});
  ~RunningBridge();
  RunningBridge(const RunningBridge&) = delete;
  RunningBridge& operator=(const RunningBridge&) = delete;

  [[nodiscard]] std::uint16_t port() const { return m_port; }
  [[nodiscard]] std::string baseURL() const { return "http://127.0.0.1:" + std::to_string(m_port); }
  void advance(std::chrono::milliseconds time) { m_ahead += time.count(); }

  /// Runs on the bridge's thread and waits for it; the agent is the fake one unless the test brought its own.
  template <class Work>
  auto run(Work work) {
    using Result = std::invoke_result_t<Work, Parts>;
    std::packaged_task<Result()> task([&] { return work(parts()); });
    auto done = task.get_future();
    boost::asio::post(m_io, [&task] { task(); });
    return done.get();
  }

  /// Lets a device in; its token.
  std::string pair(const std::string& name = "Phone");
  /// Waits on the bridge's thread's own time for something to be true; false after ten seconds.
  bool eventually(const std::function<bool(Parts)>& condition);

 private:
  Parts parts() { return {*m_bridge, *m_store, *m_fake, *m_server}; }

  varnel::testing::TemporaryDirectory m_uploads;
  boost::asio::io_context m_io{1};
  boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_guard{m_io.get_executor()};
  std::atomic<std::int64_t> m_ahead{0};  ///< milliseconds
  std::unique_ptr<store::Store> m_store;
  std::unique_ptr<agent::Agent> m_agent;
  FakeAgent m_idle{m_io.get_executor()};  ///< stands in for the fake one when the test brought its own
  FakeAgent* m_fake = &m_idle;
  std::unique_ptr<service::Bridge> m_bridge;
  std::unique_ptr<http::Server> m_server;
  std::uint16_t m_port = 0;
  std::thread m_thread;
};

}  // namespace varnel::support
