// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/usage_reset_notifier.h"

#include <gtest/gtest.h>

#include "tests/support/fake_platform.h"
#include "tests/support/waiting.h"

namespace varnel::device {
namespace {

using platform::ReminderAuthorisation;
using support::await;
using Windows = std::vector<wire::RateLimitWindow>;
using Lines = std::vector<std::string>;

const std::string kPrimary = "varnel-usage-reset-primary";
const std::string kSecondary = "varnel-usage-reset-secondary";
const std::string kRemoved = "remove " + kPrimary + " " + kSecondary;

wire::RateLimitWindow window(std::int64_t minutes, double resetsAt) {
  return {.windowDurationMins = minutes, .resetsAt = resetsAt};
}

class UsageResetNotifierTest : public ::testing::Test {
 protected:
  std::shared_ptr<support::FakeReminderCentre> centre = std::make_shared<support::FakeReminderCentre>();
  UsageResetNotifier notifier{centre, [] { return 1000.0; }};
};

TEST_F(UsageResetNotifierTest, RemovesThenAsksThenAddsInOrder) {
  await(notifier.schedule(Windows{window(300, 2000), window(10080, 3000), window(1, 4000)}));
  EXPECT_EQ(centre->log, (Lines{kRemoved, "authorisation", "add " + kPrimary, "add " + kSecondary}));
  EXPECT_EQ(centre->pending.at(kSecondary), (platform::Reminder{.id = kSecondary,
                                                                .title = "Codex usage reset",
                                                                .body = "Your Codex weekly limit is back to 100%.",
                                                                .at = 3000}));
  await(notifier.schedule(std::optional(window(300, 2500))));
  EXPECT_EQ(centre->pending.size(), 1U);
  EXPECT_EQ(centre->pending.at(kPrimary).at, 2500);
}

TEST_F(UsageResetNotifierTest, OnlyRemovesWhenNothingIsToCome) {
  for (const Windows& windows : {Windows{}, Windows{window(300, 1000)}, Windows{window(300, 10)}}) {
    centre->log.clear();
    await(notifier.schedule(windows));
    EXPECT_EQ(centre->log, (Lines{kRemoved}));
  }
  centre->log.clear();
  await(notifier.schedule(std::optional<wire::RateLimitWindow>()));
  EXPECT_EQ(centre->log, (Lines{kRemoved}));
}

TEST_F(UsageResetNotifierTest, GoesByWhatTheUserAllows) {
  centre->answer = ReminderAuthorisation::Denied;
  await(notifier.schedule(Windows{window(300, 2000)}));
  EXPECT_EQ(centre->log, (Lines{kRemoved, "authorisation"}));
  centre->answer = ReminderAuthorisation::NotDetermined;
  await(notifier.schedule(Windows{window(300, 2000)}));
  EXPECT_TRUE(centre->pending.empty());
  centre->grants = true;
  centre->log.clear();
  await(notifier.schedule(Windows{window(300, 2000)}));
  EXPECT_EQ(centre->log, (Lines{kRemoved, "authorisation", "request", "add " + kPrimary}));
}

TEST_F(UsageResetNotifierTest, GoesOnAfterAReminderThatIsNotTaken) {
  centre->refusedIds = {kPrimary};
  await(notifier.schedule(Windows{window(300, 2000), window(10080, 3000)}));
  EXPECT_EQ(centre->pending.size(), 1U);
  EXPECT_TRUE(centre->pending.contains(kSecondary));
}

}  // namespace
}  // namespace varnel::device
