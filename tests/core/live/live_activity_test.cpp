// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/live_activity.h"

#include <gtest/gtest.h>

#include "core/live/notification_text.h"
#include "core/wire/codec.h"

namespace varnel::live {
namespace {

using wire::CodexTurnState;
using ContentState = wire::CodexTurnAttributes::ContentState;
using Actions = std::vector<ActivityAction>;

constexpr double kNow = 5000;
constexpr double kStale = 5900;

wire::LiveEvent event(const std::string& payload, const std::string& rest = R"("sessionId":"s","turnId":"t",)",
                      const std::string& type = "activity.updated") {
  return wire::decode<wire::LiveEvent>(R"({"sequence":7,"type":")" + type + R"(","timestamp":1,)" + rest +
                                       R"("payload":)" + payload + "}")
      .value();
}

std::string payload(const std::string& content, const std::string& tracked = "true") {
  return R"({"tracked":)" + tracked + R"(,"project":"p","content":)" + content + "}";
}

const std::string kWorking = R"({"state":"working","message":"m","updatedAt":12.5,"sequence":3.9})";
const wire::CodexTurnAttributes kTurn{.sessionId = "s", .turnId = "t", .project = "p"};
const ContentState kWorkingState{.state = CodexTurnState::Working, .message = "m", .updatedAt = 12.5, .sequence = 3};

TEST(ActivityActions, StartTheFirstAndUpdateTheSameTurn) {
  const auto news = event(payload(kWorking));
  EXPECT_EQ(activityActions(news, std::nullopt, true, kNow), (Actions{StartActivity{kTurn, kWorkingState, kStale}}));
  const wire::CodexTurnAttributes renamed{.sessionId = "s", .turnId = "t", .project = "another name"};
  for (const bool enabled : {true, false}) {
    EXPECT_EQ(activityActions(news, renamed, enabled, kNow), (Actions{UpdateActivity{kWorkingState, kStale}}));
  }
}

TEST(ActivityActions, ReplaceAnotherTurnOrConversation) {
  const auto news = event(payload(kWorking));
  for (const wire::CodexTurnAttributes& other :
       {wire::CodexTurnAttributes{.sessionId = "s", .turnId = "t0", .project = "p"},
        wire::CodexTurnAttributes{.sessionId = "s0", .turnId = "t", .project = "p"}}) {
    EXPECT_EQ(activityActions(news, other, true, kNow),
              (Actions{EndActivity{}, StartActivity{kTurn, kWorkingState, kStale}}));
    EXPECT_EQ(activityActions(news, other, false, kNow), (Actions{EndActivity{}}));
  }
  EXPECT_TRUE(activityActions(news, std::nullopt, false, kNow).empty());
}

TEST(ActivityActions, GiveFeedbackByStateOnEveryUpdate) {
  const std::vector<std::pair<std::string, std::optional<AttentionFeedback>>> cases{
      {"working", {}},
      {"needsInput", AttentionFeedback::Warning},
      {"done", AttentionFeedback::Success},
      {"failed", AttentionFeedback::Error},
      {"interrupted", {}},
      {"stale", {}}};
  for (const auto& [state, feedback] : cases) {
    const auto news = event(payload(R"({"state":")" + state + R"(","message":""})"));
    for (const auto& current : {std::optional<wire::CodexTurnAttributes>{}, std::optional(kTurn)}) {
      const Actions actions = activityActions(news, current, true, kNow);
      ASSERT_EQ(actions.size(), feedback ? 2U : 1U) << state;
      if (feedback) EXPECT_EQ(actions[1], ActivityAction(GiveFeedback{*feedback}));
    }
  }
}

TEST(ActivityActions, FillInWhatTheContentLeavesOut) {
  const std::vector<std::pair<std::string, ContentState>> cases{
      {R"("x":1)", {.message = "m", .updatedAt = kNow, .sequence = 7}},
      {R"("updatedAt":"1","sequence":"1")", {.message = "m", .updatedAt = kNow, .sequence = 7}},
      {R"("updatedAt":null,"sequence":-2.5)", {.message = "m", .updatedAt = kNow, .sequence = -2}},
      {R"("updatedAt":3,"sequence":1e300)", {.message = "m", .updatedAt = 3, .sequence = 7}},
      {R"("sequence":9223372036854775808)", {.message = "m", .updatedAt = kNow, .sequence = 7}},
      {R"("sequence":-9223372036854775808)", {.message = "m", .updatedAt = kNow, .sequence = INT64_MIN}}};
  for (const auto& [members, expected] : cases) {
    const auto news = event(payload(R"({"state":"working","message":"m",)" + members + "}"));
    EXPECT_EQ(activityActions(news, kTurn, true, kNow), (Actions{UpdateActivity{expected, kStale}})) << members;
  }
}

TEST(ActivityActions, LeaveEverythingAsItIsOtherwise) {
  const std::vector<std::string> payloads{payload(kWorking, "false"),
                                          payload(kWorking, "1"),
                                          payload(kWorking, "\"true\""),
                                          R"({"project":"p","content":)" + kWorking + "}",
                                          R"({"tracked":true,"content":)" + kWorking + "}",
                                          R"({"tracked":true,"project":1,"content":)" + kWorking + "}",
                                          R"({"tracked":true,"project":"p"})",
                                          payload("[]"),
                                          payload(R"({"state":"paused","message":"m"})"),
                                          payload(R"({"state":"Working","message":"m"})"),
                                          payload(R"({"state":1,"message":"m"})"),
                                          payload(R"({"message":"m"})"),
                                          payload(R"({"state":"working"})"),
                                          payload(R"({"state":"working","message":null})")};
  const wire::CodexTurnAttributes other{.sessionId = "s0", .turnId = "t0", .project = "p"};
  for (const auto& each : payloads) EXPECT_TRUE(activityActions(event(each), other, true, kNow).empty()) << each;
  EXPECT_TRUE(activityActions(event(payload(kWorking), R"("sessionId":"s",)"), other, true, kNow).empty());
  EXPECT_TRUE(activityActions(event(payload(kWorking), R"("turnId":"t",)"), other, true, kNow).empty());
  const std::string ids = R"("sessionId":"s","turnId":"t",)";
  EXPECT_TRUE(activityActions(event(payload(kWorking), ids, "usage.updated"), other, true, kNow).empty());
}

TEST(ActivityText, ShowsProjectStateMessageAndMoment) {
  EXPECT_EQ(activityText(kTurn, kWorkingState, false, "14:05"), (ActivityText{"p: Working", "m\nUpdated 14:05"}));
  EXPECT_EQ(activityText(kTurn, kWorkingState, true, "14:05"),
            (ActivityText{"p: Working", "m\nUpdated 14:05, no news since"}));
  const auto text =
      activityText({.project = "a\nb"}, {.state = CodexTurnState::NeedsInput, .message = " \n"}, false, "1");
  EXPECT_EQ(text, (ActivityText{"a b: Needs input", "Updated 1"}));
}

TEST(OneLine, IsShort) {
  EXPECT_EQ(oneLine("é  b\r\n\tc", 5), "é b c");
  EXPECT_EQ(oneLine("éé b c", 5), "éé b…");
  EXPECT_EQ(oneLine("a   ", 1), "a");
  EXPECT_EQ(oneLine(std::string(1000, 'x')).size(), 300 + std::string_view("…").size());
}

TEST(ActivityRecords, TravelUnderTheirFieldNames) {
  EXPECT_EQ(wire::encode(kTurn).value(), R"({"sessionId":"s","turnId":"t","project":"p"})");
  EXPECT_EQ(wire::decode<ContentState>(kWorking).has_value(), false) << "a sequence is whole";
  EXPECT_EQ(wire::decode<ContentState>(wire::encode(kWorkingState).value()).value(), kWorkingState);
}

}  // namespace
}  // namespace varnel::live
