// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <stop_token>
#include <system_error>
#include <thread>
#include <utility>

#include "app/platform/secret_store.h"

namespace varnel::platform {

/// Runs `work` on a thread of its own and waits for it until `deadline` at most; past it the token is stopped and the
/// result is ETIMEDOUT. The thread may then go on for as long as it is stuck, also while the program ends: nobody joins
/// it, so `work` must own all that it touches.
template <class Value>
SecretResult<Value> runBounded(std::chrono::steady_clock::time_point deadline,
                               std::function<SecretResult<Value>(std::stop_token)> work) {
  const auto promise = std::make_shared<std::promise<SecretResult<Value>>>();
  std::future<SecretResult<Value>> result = promise->get_future();
  std::stop_source stop;
  try {
    std::thread([promise, work = std::move(work), token = stop.get_token()] {
      promise->set_value(work(token));
    }).detach();
  } catch (const std::system_error& error) {
    return std::unexpected(SecretError{.status = error.code().value()});
  }
  if (result.wait_until(deadline) == std::future_status::ready) return result.get();
  stop.request_stop();
  return std::unexpected(SecretError{.status = ETIMEDOUT});
}

}  // namespace varnel::platform
