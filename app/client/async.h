// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>

#include "app/client/client_error.h"

namespace varnel::client {

/// What one coroutine waits at. Opening it, any number of times, lets the coroutine go on from the event loop and never
/// inside `open`, so that a stop callback or a signal may open it. Main thread only.
class Gate {
 public:
  Gate() = default;
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;

  void open();

  class Awaiter {
   public:
    explicit Awaiter(Gate& gate) : m_gate(&gate) {}
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiter);
    void await_resume() const noexcept {}

   private:
    Gate* m_gate;
  };
  /// Waits even at an open gate for one turn of the event loop.
  [[nodiscard]] Awaiter wait() { return Awaiter(*this); }

 private:
  std::coroutine_handle<> m_waiter;
  bool m_open = false;
};

/// A stop token that is stopped when either of two is. Lives in the frame of the coroutine that passes it on.
class EitherStop {
 public:
  EitherStop(const std::stop_token& first, const std::stop_token& second)
      : m_first(first, Forward{&m_source}), m_second(second, Forward{&m_source}) {}

  [[nodiscard]] std::stop_token token() const { return m_source.get_token(); }

 private:
  struct Forward {
    std::stop_source* source;
    void operator()() const { source->request_stop(); }
  };
  std::stop_source m_source;
  std::stop_callback<Forward> m_first;
  std::stop_callback<Forward> m_second;
};

/// Waits on a clock that goes on while the device sleeps. Fails only with `Cancelled`.
Task<Result<void>> sleepFor(std::chrono::milliseconds duration, std::stop_token stop = {});

namespace detail {
/// Runs `work` on a thread of the global pool, then `done` on the main thread if the application still stands.
void runOnWorker(std::function<void()> work, std::function<void()> done);
}  // namespace detail

/// Runs `work`, which must not throw, on a worker thread and hands over what it returns. Stopping ends the wait, not
/// the work: its result is then dropped. What `work` holds is destroyed on the worker.
template <class Work>
Task<Result<std::invoke_result_t<Work>>> onWorker(Work work, std::stop_token stop) {
  using Value = std::invoke_result_t<Work>;
  struct Job {
    std::optional<Work> work;
    std::optional<Value> value;
    Gate gate;
  };
  auto job = std::make_shared<Job>();
  job->work.emplace(std::move(work));
  detail::runOnWorker(
      [job] {
        job->value.emplace((*job->work)());
        job->work.reset();
      },
      [job] { job->gate.open(); });
  {
    std::stop_callback onStop(stop, [&job] { job->gate.open(); });
    co_await job->gate.wait();
  }
  if (stop.stop_requested()) co_return std::unexpected(ClientError(Cancelled{}));
  co_return Result<Value>(std::in_place, std::move(*job->value));
}

}  // namespace varnel::client
