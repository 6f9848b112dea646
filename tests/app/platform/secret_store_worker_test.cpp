// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/secret_store_worker.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace varnel::platform {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

TEST(RunBoundedTest, HandsOverResultsAndErrors) {
  EXPECT_EQ(runBounded<std::string>(Clock::now() + 10s, [](std::stop_token) { return "value"; }), "value");
  const SecretError locked{.status = 2};
  EXPECT_EQ(runBounded<void>(Clock::now() + 10s, [&](std::stop_token) { return std::unexpected(locked); }).error(),
            locked);
}

TEST(RunBoundedTest, LeavesStuckWorkBehindWithAllThatItTouches) {
  struct Gate {
    std::mutex mutex;
    std::condition_variable_any changed;
    bool isOpen = false;
    bool wasStopped = false;
    std::string seen;
  };
  const auto gate = std::make_shared<Gate>();
  const auto begin = Clock::now();
  {
    const auto text = std::make_shared<std::string>("owned by the work");
    const auto result =
        runBounded<void>(begin + 50ms, [gate, text](const std::stop_token& token) -> SecretResult<void> {
          std::unique_lock lock(gate->mutex);
          gate->changed.wait(lock, [&] { return gate->isOpen; });
          gate->wasStopped = token.stop_requested();
          gate->seen = *text;
          gate->changed.notify_all();
          return {};
        });
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().status, 110);
  }
  EXPECT_GE(Clock::now() - begin, 50ms);
  EXPECT_LT(Clock::now() - begin, 1s);

  std::unique_lock lock(gate->mutex);
  gate->isOpen = true;
  gate->changed.notify_all();
  ASSERT_TRUE(gate->changed.wait_for(lock, 10s, [&] { return !gate->seen.empty(); }));
  EXPECT_TRUE(gate->wasStopped);
  EXPECT_EQ(gate->seen, "owned by the work");
}

}  // namespace
}  // namespace varnel::platform
