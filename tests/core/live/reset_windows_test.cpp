// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/reset_windows.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace varnel::live {
namespace {

using wire::RateLimitWindow;

constexpr double kNow = 1000;

RateLimitWindow window(std::optional<std::int64_t> minutes, std::optional<double> resetsAt) {
  return {.usedPercent = 40, .windowDurationMins = minutes, .resetsAt = resetsAt};
}

ResetReminder primary(const std::string& body, double at) {
  return {.id = "varnel-usage-reset-primary", .title = "Codex usage reset", .body = body, .at = at};
}

TEST(ResetReminders, NameTheWindowByItsExactLength) {
  const std::vector<std::pair<std::optional<std::int64_t>, std::string>> cases{
      {300, "Your Codex 5-hour limit is back to 100%."},  {10080, "Your Codex weekly limit is back to 100%."},
      {299, "Your Codex usage limit is back to 100%."},   {301, "Your Codex usage limit is back to 100%."},
      {10079, "Your Codex usage limit is back to 100%."}, {std::nullopt, "Your Codex usage limit is back to 100%."}};
  for (const auto& [minutes, body] : cases) {
    EXPECT_EQ(resetReminders({window(minutes, 1000.5)}, kNow), (std::vector{primary(body, 1000.5)}));
  }
}

TEST(ResetReminders, AreForWindowsThatResetLaterThanNow) {
  EXPECT_TRUE(resetReminders({}, kNow).empty());
  for (const std::optional<double> at : {std::optional<double>{}, std::optional(kNow), std::optional(999.0),
                                         std::optional(std::numeric_limits<double>::quiet_NaN())}) {
    EXPECT_TRUE(resetReminders({window(300, at)}, kNow).empty());
  }
}

TEST(ResetReminders, GiveTheFirstIdentifierToTheFirstFutureWindow) {
  EXPECT_EQ(resetReminders({window(300, 900), window(10080, 2000)}, kNow),
            (std::vector{primary("Your Codex weekly limit is back to 100%.", 2000)}));
}

TEST(ResetReminders, AreTwoAtMost) {
  const auto reminders =
      resetReminders({window(300, 1), window(300, 3000), window(10080, 2000), window(1, 4000)}, kNow);
  ASSERT_EQ(reminders.size(), 2U);
  EXPECT_EQ(reminders[0], primary("Your Codex 5-hour limit is back to 100%.", 3000));
  EXPECT_EQ(reminders[1].id, "varnel-usage-reset-secondary");
  EXPECT_EQ(reminders[1].at, 2000);
}

TEST(WindowsToWatch, ArePrimaryThenSecondary) {
  wire::UsageEnvelope usage;
  usage.rateLimit = window(1, 1);
  EXPECT_TRUE(windowsToWatch(usage).empty());
  usage.secondary = window(10080, 2);
  EXPECT_EQ(windowsToWatch(usage), (std::vector{window(10080, 2)}));
  usage.primary = window(300, 1);
  EXPECT_EQ(windowsToWatch(usage), (std::vector{window(300, 1), window(10080, 2)}));
}

}  // namespace
}  // namespace varnel::live
