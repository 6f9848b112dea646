// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/event_rules.h"

#include <gtest/gtest.h>

#include "core/live/rate_limit.h"

namespace varnel::live {
namespace {

struct Case {
  std::string name;
  std::string type;
  std::optional<std::string> sessionId;
  std::vector<EventAction> requests;
};

class EventRules : public testing::TestWithParam<Case> {};

TEST_P(EventRules, CallForTheseActionsInThisOrder) {
  const auto& [name, type, sessionId, requests] = GetParam();
  wire::LiveEvent event;
  event.type = type;
  event.sessionId = sessionId;
  auto actions = requests;
  if (type != "snapshot.required") actions.insert(actions.begin(), ApplyToActivity{event});
  EXPECT_TRUE(actionsFor(event) == actions);
}

const LoadSession kLoad{"s"};
const RefreshLists kLists{.includeRateLimit = false};

INSTANTIATE_TEST_SUITE_P(
    Cases, EventRules,
    testing::Values(
        Case{"Snapshot", "snapshot.required", std::nullopt, {RefreshLists{.includeRateLimit = true}}},
        Case{"SnapshotIgnoresItsSession", "snapshot.required", "s", {RefreshLists{.includeRateLimit = true}}},
        Case{"Usage", "usage.updated", std::nullopt, {RefreshRateLimit{}}},
        Case{"UsageOfASession", "usage.updated", "s", {RefreshRateLimit{}, kLoad}},
        Case{"Tracking", "tracking.changed", std::nullopt, {kLists}},
        Case{"TrackingOfASession", "tracking.changed", "s", {kLoad, kLists}},
        Case{"Activity", "activity.updated", std::nullopt, {kLists}},
        Case{"ActivityOfASession", "activity.updated", "s", {kLoad, kLists}},
        Case{"Unknown", "item.completed", std::nullopt, {}}, Case{"UnknownOfASession", "item.completed", "s", {kLoad}},
        Case{"NamesAreExact", "Usage.updated", std::nullopt, {}}),
    [](const auto& each) { return each.param.name; });

TEST(ShownWindow, PrefersThePrimaryOne) {
  const wire::RateLimitWindow general{.usedPercent = 1, .windowDurationMins = {}, .resetsAt = {}};
  const wire::RateLimitWindow primary{.usedPercent = 2, .windowDurationMins = {}, .resetsAt = {}};
  wire::UsageEnvelope usage;
  EXPECT_FALSE(shownWindow(usage).has_value());
  usage.secondary = primary;
  EXPECT_FALSE(shownWindow(usage).has_value());
  usage.rateLimit = general;
  EXPECT_EQ(shownWindow(usage), general);
  usage.primary = primary;
  EXPECT_EQ(shownWindow(usage), primary);
}

}  // namespace
}  // namespace varnel::live
