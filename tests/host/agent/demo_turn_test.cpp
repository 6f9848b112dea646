// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/host/agent/demo_driver.h"

namespace varnel::agent::demo {
namespace {

using testing::HasSubstr;
using testing::Not;
using wire::CodexTurnState;

bool isTool(const wire::TranscriptItem& item) {
  return !item.role && item.type != "reasoning";
}

std::vector<wire::TranscriptItem> itemsFrom(const Conversation& conversation, std::size_t first) {
  return {conversation.items.begin() + static_cast<std::ptrdiff_t>(first), conversation.items.end()};
}

TEST(DemoTurn, IsEchoedWorkedOnStreamedAndDoneInThisOrder) {
  Driver driver;
  const std::string id = driver.idle();
  const Conversation before = driver.conversation(id);
  driver.changes.clear();
  TurnInput input = Driver::message("  Please fix the crash in the cache 🐛\n");
  input.clientMessageId = "7C0F";
  ASSERT_TRUE(driver.call(driver->sendMessage(id, input)));

  // The echo and the turn are there when the call returns.
  const Conversation working = driver.conversation(id);
  ASSERT_EQ(working.items.size(), before.items.size() + 1);
  EXPECT_EQ(working.items.back().type, "userMessage");
  EXPECT_EQ(working.items.back().role, "user");
  EXPECT_EQ(working.items.back().text, input.text);
  EXPECT_EQ(*working.items.back().detail->value().member("clientId"), json::JSONValue("7C0F"));
  EXPECT_EQ(working.summary.state, CodexTurnState::Working);
  EXPECT_TRUE(working.summary.active);
  ASSERT_TRUE(working.summary.currentTurnId);

  std::vector<std::string> commentaries;
  std::vector<std::size_t> planned;
  bool sawRunningTool = false;
  driver.lookUntil(id, [&](const Conversation& now) {
    sawRunningTool = sawRunningTool || now.items.back().status == "inProgress";
    commentaries.push_back(now.summary.latestCommentary);
    if (now.summary.plan) {
      planned.push_back(static_cast<std::size_t>(
          std::ranges::count(now.summary.plan->steps, "completed", &wire::ConversationPlanStep::status)));
    }
    return now.summary.state == CodexTurnState::Done;
  });
  EXPECT_TRUE(sawRunningTool);
  EXPECT_TRUE(std::ranges::is_sorted(planned));
  EXPECT_LT(planned.front(), planned.back());
  EXPECT_GT(std::set<std::string>(commentaries.begin(), commentaries.end()).size(), 5U) << "commentary did not grow";

  const Conversation done = driver.conversation(id);
  EXPECT_FALSE(done.summary.active);
  EXPECT_FALSE(done.summary.currentTurnId);
  EXPECT_TRUE(done.summary.plan->completed);
  EXPECT_GT(done.summary.tokenUsage->inputTokens, before.summary.tokenUsage->inputTokens);
  EXPECT_EQ(done.items.back().phase, "final_answer");
  EXPECT_THAT(*done.items.back().text, HasSubstr("Please fix the crash in the cache 🐛"));
  for (const auto& item : itemsFrom(done, before.items.size())) {
    if (isTool(item)) EXPECT_TRUE(item.status == "completed" || item.status == "failed") << item.id;
  }
  EXPECT_EQ(driver.changes.front().kind, Change::Kind::Item);
  EXPECT_EQ(driver.changes.back().kind, Change::Kind::Usage);
  for (const Change& change : driver.changes)
    EXPECT_EQ(change.sessionId.has_value(), change.kind != Change::Kind::Usage);
}

TEST(DemoTurn, TakesSixToTenSecondsOfLife) {
  constexpr double kSpeed = 20;
  Driver driver({.speed = kSpeed});
  for (const char* text : {"Please explain the log", "Simulate a failure", "Rename it everywhere"}) {
    const auto begin = std::chrono::steady_clock::now();
    const std::string session = driver
                                    .call(driver->createSession({.cwd = "/tmp",
                                                                 .sandbox = "workspace-write",
                                                                 .approvalPolicy = "never",
                                                                 .firstTurn = Driver::message(text)}))
                                    .value();
    driver.lookUntil(session, [](const Conversation& now) { return !now.summary.active; });
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count() * kSpeed;
    EXPECT_GE(seconds, 6.0) << text;
    EXPECT_LE(seconds, 20.0) << text << ": twice the ten seconds, for a busy machine";
  }
}

TEST(DemoTurn, AMessageSentTwiceCountsOnce) {
  Driver driver;
  const std::string id = driver.idle();
  TurnInput input = Driver::message("Only once");
  input.clientMessageId = "same";
  ASSERT_TRUE(driver.call(driver->sendMessage(id, input)));
  const std::size_t items = driver.conversation(id).items.size();
  const auto turn = driver.conversation(id).summary.currentTurnId;
  ASSERT_TRUE(driver.call(driver->sendMessage(id, input)));
  EXPECT_EQ(driver.conversation(id).items.size(), items);
  EXPECT_EQ(driver.conversation(id).summary.currentTurnId, turn);
}

TEST(DemoTurn, SteeringGoesIntoTheRunningTurnAtAnyMoment) {
  // Early: before the answer. Late: while it is being said.
  for (const std::string phase : {"commentary", "final_answer"}) {
    Driver driver({.speed = 10});
    const std::string id = driver.idle();
    ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("Explain the log"))));
    const auto turn = driver.conversation(id).summary.currentTurnId;
    driver.lookUntil(id, [&](const Conversation& now) { return now.items.back().phase == phase; });
    ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("and mention the checkpoint"))));
    EXPECT_EQ(driver.conversation(id).summary.currentTurnId, turn) << phase;
    driver.waitForState(id, CodexTurnState::Done);
    const Conversation done = driver.conversation(id);
    EXPECT_THAT(lastAnswer(done), HasSubstr("and mention the checkpoint")) << phase;
    EXPECT_EQ(std::ranges::count(done.items, std::optional<std::string>("and mention the checkpoint"),
                                 &wire::TranscriptItem::text),
              1);
    for (const auto& item : done.items) {
      if (item.role == "user") EXPECT_THAT(*item.text, Not(HasSubstr("**"))) << "the agent spoke in the user's place";
    }
  }
}

TEST(DemoTurn, StopEndsItWhereItStands) {
  Driver driver({.speed = 10});
  const std::string id = driver.idle();
  ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("Run the tests"))));
  driver.lookUntil(id, [](const Conversation& now) { return now.items.back().status == "inProgress"; });
  ASSERT_TRUE(driver.call(driver->interrupt(id)));
  const Conversation stopped = driver.conversation(id);
  EXPECT_EQ(stopped.summary.state, CodexTurnState::Interrupted);
  EXPECT_FALSE(stopped.summary.active);
  EXPECT_FALSE(stopped.summary.currentTurnId);
  EXPECT_EQ(stopped.items.back().status, "failed");
  EXPECT_EQ(*stopped.items.back().detail->value().member("status"), json::JSONValue("failed"));

  driver.changes.clear();
  driver.io.run_for(std::chrono::milliseconds(400));
  EXPECT_TRUE(std::ranges::none_of(driver.changes, [&](const Change& change) { return change.sessionId == id; }))
      << "it went on after the stop";
  const auto again = driver.call(driver->interrupt(id));
  ASSERT_FALSE(again);
  EXPECT_EQ(again.error().kind, AgentError::Kind::Conflict);

  ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("Explain it then"))));
  EXPECT_EQ(driver.conversation(id).summary.state, CodexTurnState::Working);
}

TEST(DemoTurn, CanFailAndSaysWhy) {
  Driver driver;
  const std::string id = driver.idle();
  ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("Please simulate a failure"))));
  driver.waitForState(id, CodexTurnState::Failed);
  EXPECT_THAT(driver.conversation(id).summary.latestCommentary, HasSubstr("stream disconnected"));
  EXPECT_FALSE(driver.conversation(id).summary.active);
}

TEST(DemoTurn, AGoalTakesSeveralTurnsAndAStopPausesIt) {
  Driver driver;
  const std::string id = driver.idle();
  const auto turns = [&] {
    std::set<std::string> ids;
    for (const Change& change : driver.changes) {
      if (change.kind == Change::Kind::Turn && change.sessionId == id) ids.insert(change.turnId.value_or(""));
    }
    return ids;
  };
  const auto reached = [](const Conversation& now) {
    return lastAnswer(now).starts_with("## The goal is reached") && now.summary.state == CodexTurnState::Done;
  };
  ASSERT_TRUE(driver.call(driver->startGoal(id, Driver::message("No TODO is left in the tree"))));
  EXPECT_EQ(driver.conversation(id).items.back().text, "No TODO is left in the tree");
  driver.lookUntil(id, reached);
  EXPECT_THAT(lastAnswer(driver.conversation(id)), HasSubstr("> No TODO is left in the tree"));
  EXPECT_EQ(turns().size(), 3U);
  EXPECT_TRUE(driver.conversation(id).summary.plan->completed);

  ASSERT_TRUE(driver.call(driver->startGoal(id, Driver::message("Another goal"))));
  driver.lookUntil(id, [](const Conversation& now) { return lastAnswer(now).starts_with("**Stage 1 of 3.**"); });
  ASSERT_TRUE(driver.call(driver->interrupt(id)));
  driver.changes.clear();
  driver.io.run_for(std::chrono::milliseconds(60));
  EXPECT_EQ(driver.conversation(id).summary.state, CodexTurnState::Interrupted);
  EXPECT_TRUE(std::ranges::none_of(driver.changes, [&](const Change& change) { return change.sessionId == id; }))
      << "a paused goal began a turn";

  ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("continue with it"))));
  driver.lookUntil(id, reached);
  EXPECT_THAT(lastAnswer(driver.conversation(id)), HasSubstr("> Another goal"));
}

TEST(DemoTurn, PlanModeOnlyAsksAndProposes) {
  Driver driver;
  const std::string id = driver.idle();
  const std::size_t before = driver.conversation(id).items.size();
  ASSERT_TRUE(driver.call(
      driver->sendMessage(id, Driver::message("Delete the cache layer", wire::CodexCollaborationMode::Plan))));
  driver.waitForState(id, CodexTurnState::NeedsInput);
  const Conversation asking = driver.conversation(id);
  ASSERT_EQ(asking.pendingRequests.size(), 1U);
  EXPECT_EQ(asking.pendingRequests[0].method, "item/tool/requestUserInput");
  EXPECT_EQ(asking.summary.turnPreferences->mode, wire::CodexCollaborationMode::Plan);
  const auto answer = json::JSONValue::Object{{"answers", json::JSONValue::Array{"With tests"}}};
  ASSERT_TRUE(driver.call(driver->resolve(
      asking.pendingRequests[0].id, json::JSONValue::Object{{"answers", json::JSONValue::Object{{"scope", answer}}}})));
  driver.waitForState(id, CodexTurnState::Done);
  const Conversation done = driver.conversation(id);
  EXPECT_THAT(lastAnswer(done),
              testing::AllOf(HasSubstr("Proposed plan"), HasSubstr("With tests"), HasSubstr("Delete the cache layer")));
  EXPECT_FALSE(std::ranges::any_of(itemsFrom(done, before), isTool)) << "a tool ran in plan mode";
}

TEST(DemoTurn, AttachmentsAreNamedWithTheirKind) {
  Driver driver;
  const std::string id = driver.idle();
  const std::size_t before = driver.conversation(id).items.size();
  TurnInput input = Driver::message("Look at these");
  input.attachments.push_back({{"a1", "image", "skizze über.png", "image/png", 120'400}, "/var/lib/varnel/a1"});
  input.attachments.push_back({{"a2", "video", "demo.mov", "video/quicktime", 4'200'000}, "/var/lib/varnel/a2"});
  ASSERT_TRUE(driver.call(driver->sendMessage(id, input)));
  EXPECT_EQ(driver.conversation(id).items.back().text, "Look at these") << "attachments are no part of the text";
  driver.waitForState(id, CodexTurnState::Done);
  std::string said;
  for (const auto& item : itemsFrom(driver.conversation(id), before)) {
    if (item.role == "assistant") said += *item.text;
  }
  EXPECT_THAT(said,
              testing::AllOf(HasSubstr("`skizze über.png`, image, 120 kB"), HasSubstr("`demo.mov`, video, 4 MB")));
}

TEST(DemoTurn, AsksWithinEveryFourMessagesButNotAtTheFirst) {
  Driver driver;
  const std::string id = driver.idle();
  std::size_t asked = 0;
  for (int i = 0; i < 4; ++i) {
    ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("Tidy the settings a little"))));
    driver.lookUntil(id, [](const Conversation& now) { return now.summary.state != CodexTurnState::Working; });
    if (driver.conversation(id).summary.state != CodexTurnState::NeedsInput) continue;
    EXPECT_GT(i, 0);
    ++asked;
    ASSERT_TRUE(driver.call(driver->interrupt(id)));
  }
  EXPECT_EQ(asked, 1U);
}

}  // namespace
}  // namespace varnel::agent::demo
