// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/live_activity_manager.h"

#include <gtest/gtest.h>

#include "core/wire/codec.h"
#include "tests/support/fake_platform.h"

namespace varnel::device {
namespace {

using platform::HapticSignal;
using wire::CodexTurnState;
using Lines = std::vector<std::string>;

class LiveActivityManagerTest : public ::testing::Test {
 protected:
  void tell(const std::string& turn, const std::string& state, const std::string& session = "s") {
    manager.apply(wire::decode<wire::LiveEvent>(
                      R"({"sequence":1,"type":"activity.updated","timestamp":1,"sessionId":")" + session +
                      R"(","turnId":")" + turn + R"(","payload":{"tracked":true,"project":"p","content":{"state":")" +
                      state + R"(","message":"m","updatedAt":5}}})")
                      .value());
  }
  platform::Activity left(const std::string& id, const std::string& turn) {
    return {.id = id, .attributes = {.sessionId = "s", .turnId = turn, .project = "p"}};
  }

  std::shared_ptr<support::FakeActivityCentre> centre = std::make_shared<support::FakeActivityCentre>();
  std::shared_ptr<support::FakeHaptics> haptics = std::make_shared<support::FakeHaptics>();
  double now = 1000;
  LiveActivityManager manager{centre, haptics, [this] { return now; }};
};

TEST_F(LiveActivityManagerTest, FollowsOneTurnAndThenTheNext) {
  tell("t1", "working");
  now += 10;
  tell("t1", "needsInput");
  tell("t1", "needsInput");
  EXPECT_EQ(centre->log, (Lines{"request activity-1", "update activity-1", "update activity-1"}));
  EXPECT_EQ(centre->existing[0].content.staleDate, 1910);
  EXPECT_EQ(centre->existing[0].content.state.state, CodexTurnState::NeedsInput);
  EXPECT_EQ(haptics->felt, (std::vector{HapticSignal::Warning, HapticSignal::Warning})) << "each time";

  tell("t2", "done");
  EXPECT_EQ(Lines(centre->log.begin() + 3, centre->log.end()), (Lines{"end activity-1", "request activity-2"}));
  EXPECT_EQ(centre->lastFinalContent->state.state, CodexTurnState::NeedsInput) << "its own last content";
  EXPECT_EQ(centre->lastFinalContent->staleDate, std::nullopt);
  EXPECT_EQ(centre->existing.size(), 1U) << "done, it stays";
  tell("t2", "failed", "other");
  EXPECT_EQ(haptics->felt.back(), HapticSignal::Error);
  EXPECT_EQ(manager.current()->id, "activity-3");
}

TEST_F(LiveActivityManagerTest, StartsNothingWhileDisabled) {
  tell("t1", "working");
  centre->enabled = false;
  tell("t1", "done");
  EXPECT_EQ(centre->log.back(), "update activity-1") << "what runs goes on";
  tell("t2", "done");
  EXPECT_EQ(centre->log.back(), "end activity-1");
  EXPECT_FALSE(manager.current().has_value());
  tell("t2", "done");
  EXPECT_EQ(centre->log.size(), 3U);
  EXPECT_EQ(haptics->felt.size(), 1U);

  centre->enabled = true;
  centre->refuses = true;
  tell("t2", "done");
  EXPECT_FALSE(manager.current().has_value());
  centre->refuses = false;
  tell("t2", "working");
  EXPECT_EQ(centre->log.back(), "request activity-2");
}

TEST_F(LiveActivityManagerTest, TakesUpTheLatestAndClearsAll) {
  manager.restore();
  EXPECT_FALSE(manager.current().has_value());
  centre->existing = {left("b", "t1"), left("c", "t2"), left("a", "t3")};
  manager.restore();
  EXPECT_EQ(manager.current()->id, "c");
  EXPECT_TRUE(centre->log.empty()) << "the others are left as they are";
  tell("t2", "working");
  EXPECT_EQ(centre->log, (Lines{"update c"}));
  manager.clear();
  EXPECT_EQ(centre->log, (Lines{"update c", "end b", "end c", "end a"}));
  EXPECT_FALSE(manager.current().has_value());
}

}  // namespace
}  // namespace varnel::device
