// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "core/wire/bodies.h"
#include "core/wire/catalogue.h"
#include "core/wire/codec.h"
#include "core/wire/event.h"
#include "core/wire/pairing.h"
#include "core/wire/request.h"
#include "core/wire/search.h"
#include "core/wire/session.h"
#include "core/wire/session_detail.h"
#include "core/wire/transcript.h"
#include "core/wire/usage.h"

namespace varnel::wire {
namespace {

constexpr std::string_view kSession =
    R"({"id":"s1","project":"p","active":true,"state":"working","latestCommentary":"c","updatedAt":1.5,"pinned":false)";

std::string session(std::string_view rest = "") {
  return std::string(kSession) + std::string(rest) + "}";
}

/// The record written again after reading, or why it could not be read.
template <class Record>
std::string again(std::string_view text) {
  const auto record = decode<Record>(text);
  if (!record) return record.error().message();
  const auto written = encode(*record);
  if (!written) return written.error().message();
  // What is written must say the same.
  EXPECT_EQ(decode<Record>(*written), *record) << *written;
  EXPECT_EQ(hashOf(*decode<Record>(*written)), hashOf(*record));
  return *written;
}

TEST(Records, KeepDeclaredOrderAndLeaveOutWhatIsAbsent) {
  EXPECT_EQ(again<SessionSummary>(session()), session());
  EXPECT_EQ(again<SessionSummary>(session(R"(,"name":null,"plan":null,"future":{"a":[1]})")), session());
  EXPECT_EQ(again<SessionSummary>(
                R"({"plan":{"updatedAt":2,"completed":true,"steps":[{"status":"pending","step":"x"}]},"pinned":true,)"
                R"("tokenUsage":{"contextTokens":1.0,"contextWindow":1e2},"updatedAt":1e0,"latestCommentary":"",)"
                R"("turnPreferences":{"mode":"plan","model":"m","reasoningEffort":"high"},"state":"stale",)"
                R"("active":false,"project":"","id":"i","tracked":false,"name":"n"})"),
            R"({"id":"i","name":"n","project":"","active":false,"state":"stale","latestCommentary":"","updatedAt":1,)"
            R"("pinned":true,"tracked":false,"tokenUsage":{"contextTokens":1,"contextWindow":100},)"
            R"("turnPreferences":{"mode":"plan","model":"m","reasoningEffort":"high"},)"
            R"("plan":{"steps":[{"step":"x","status":"pending"}],"completed":true,"updatedAt":2}})");
  EXPECT_EQ(again<EmptyBody>(R"({"anything":1})"), "{}");
  EXPECT_EQ(again<RateLimitEnvelope>("{}"), "{}");
  EXPECT_EQ(again<LiveEvent>(R"({"sequence":7,"type":"x","timestamp":1,"payload":{}})"),
            R"({"sequence":7,"type":"x","timestamp":1,"payload":{}})");
  EXPECT_EQ(again<TrackingBody>(R"({"pin":false})"), R"({"pin":false})");
  EXPECT_EQ(again<UsageEnvelope>(R"({"summary":{},"dailyUsageBuckets":[],"fetchedAt":3.25})"),
            R"({"summary":{},"dailyUsageBuckets":[],"fetchedAt":3.25})");
}

TEST(Records, NameThePathAndTheReasonOfEveryFailure) {
  const auto sessions = [](std::string_view last) {
    return R"({"sessions":[)" + session() + "," + std::string(last) + "]}";
  };
  EXPECT_EQ(again<SessionsEnvelope>("{}"), "sessions: missing");
  EXPECT_EQ(again<SessionsEnvelope>("[]"), "expected an object, found an array");
  EXPECT_EQ(again<SessionsEnvelope>(sessions("{}")), "sessions[1].id: missing");
  EXPECT_EQ(again<SessionsEnvelope>(sessions(session(R"(,"state":"x")"))), "sessions[1].state: unknown value \"x\"");
  EXPECT_EQ(again<SessionsEnvelope>(sessions(session(R"(,"state":1)"))),
            "sessions[1].state: expected a string, found a number");
  EXPECT_EQ(again<SessionsEnvelope>(sessions(session(R"(,"pinned":null)"))),
            "sessions[1].pinned: expected a boolean, found null");
  EXPECT_EQ(again<SessionsEnvelope>(sessions(session(R"(,"pinned":1)"))),
            "sessions[1].pinned: expected a boolean, found a number");
  EXPECT_EQ(again<SessionsEnvelope>(sessions(session(R"(,"updatedAt":true)"))),
            "sessions[1].updatedAt: expected a number, found a boolean");
  EXPECT_EQ(again<SessionsEnvelope>(sessions(session(R"(,"tokenUsage":{"contextTokens":1,"contextWindow":0.5})"))),
            "sessions[1].tokenUsage.contextWindow: expected an integer, found a number with a fraction");
  EXPECT_EQ(again<SessionsEnvelope>(sessions(session(R"(,"tokenUsage":{"contextTokens":9223372036854775808,)"))),
            "sessions[1].tokenUsage.contextTokens: integer out of range");
  EXPECT_EQ(
      again<SessionSummary>(session(R"(,"plan":{"steps":[{"step":"a","status":2}],"completed":true,"updatedAt":1})")),
      "plan.steps[0].status: expected a string, found a number");
  EXPECT_EQ(again<ConversationPreferences>(R"({"mode":"Plan","model":"","reasoningEffort":""})"),
            "mode: unknown value \"Plan\"");
  EXPECT_EQ(again<PairPayload>(R"({"version":"1","baseURL":"http://h","secret":"s"})"),
            "version: expected an integer, found a string");
  EXPECT_EQ(again<PairPayload>(R"({"version":1,"baseURL":"http://h h","secret":"s"})"), "baseURL: not a URL");
  EXPECT_EQ(again<PairPayload>("varnel"), "unexpected \"v\" at byte 0");
  EXPECT_EQ(again<UsageEnvelope>(R"({"summary":{},"dailyUsageBuckets":[],"fetchedAt":1,"primary":{}})"),
            "primary.usedPercent: missing");
  EXPECT_EQ(again<SearchEnvelope>(R"({"data":[{"snippet":"","thread":{}}]})"), "data[0].thread.id: missing");
  EXPECT_EQ(again<ArchivedSessionsEnvelope>(R"({"data":[{"id":"a"},{"id":2}]})"),
            "data[1].id: expected a string, found a number");
  EXPECT_EQ(again<ServerError>(R"({"error":"a"}x)"), "unexpected \"x\" at byte 13");
}

TEST(Records, TakeTheLaterOfTwoMembersOfOneName) {
  EXPECT_EQ(again<ServerError>(R"({"error":"a","error":"b"})"), R"({"error":"b"})");
  EXPECT_EQ(again<RateLimitWindow>(R"({"usedPercent":1,"resetsAt":2,"resetsAt":null})"), R"({"usedPercent":1})");
}

TEST(Records, FindKeysThatAreWrittenWithEscapes) {
  EXPECT_EQ(again<ServerError>(R"({"\u0065rror":"caf\u00e9"})"), R"({"error":"café"})");
}

TEST(Records, RefuseToWriteWhatIsNotText) {
  for (const std::string text : {"\xff", "\xe2\x82", "\xf0\x9f\x98", "abc\xc3"}) {
    EXPECT_EQ(encode(RenameBody{.name = text}).error().message(), "name: text is not UTF-8");
  }
  const MessageBody body{.attachments = {{.id = "a"}, {.id = "b", .name = "\xc3("}}};
  EXPECT_EQ(encode(body).error().message(), "attachments[1].name: text is not UTF-8");
}

TEST(Records, HaveTheIdentitiesThatListsGoBy) {
  EXPECT_EQ((ConversationPlanStep{.step = "a", .status = "pending"}.identity()), "pending-a");
  EXPECT_EQ(decode<ThreadUsageGroup>(R"({"estimatedUsageCreditsMicros":1,"model":"m"})")->identity(),
            "m-unknown-default");
  EXPECT_EQ((ThreadUsageGroup{.model = "a", .reasoningEffort = "high", .speed = "fast"}.identity()), "a-high-fast");
  EXPECT_EQ((ProjectRecord{.path = "/p", .name = "n"}.identity()), "/p");
}

TEST(TranscriptItem, KeepsDetailAsAnyValueButNull) {
  constexpr std::string_view kBare = R"({"id":"i","type":"t","timestamp":1})";
  EXPECT_EQ(again<TranscriptItem>(R"({"id":"i","type":"t","timestamp":1,"detail":null})"), kBare);
  EXPECT_EQ(again<TranscriptItem>(R"({"id":"i","type":"t","timestamp":1,"detail": { "b":1.0, "a":[] } })"),
            R"({"id":"i","type":"t","timestamp":1,"detail":{"a":[],"b":1}})");
  EXPECT_EQ(again<TranscriptItem>(R"({"id":"i","type":"t","timestamp":1,"detail":{"a":[1,}})"),
            "detail: unexpected \"}\" at byte 52");
  EXPECT_NE(*decode<TranscriptItem>(kBare),
            *decode<TranscriptItem>(R"({"id":"i","type":"t","timestamp":1,"detail":0})"));
}

TEST(PendingRequest, NeedsParamsToBeAnObject) {
  const auto request = [](std::string_view params, std::string_view decisions) {
    return R"({"id":"r","method":"m","sessionId":"s","createdAt":1,"params":)" + std::string(params) +
           R"(,"availableDecisions":)" + std::string(decisions) + R"(,"resolved":false})";
  };
  EXPECT_EQ(again<PendingRequest>(request(R"({"k":{"a":null}})", R"(["accept",{"x":1},null])")),
            request(R"({"k":{"a":null}})", R"(["accept",{"x":1},null])"));
  EXPECT_EQ(again<PendingRequest>(request("[]", "[]")), "params: expected an object, found an array");
  EXPECT_EQ(again<PendingRequest>(request("{}", "{}")), "availableDecisions: expected an array, found an object");
}

TEST(SessionDetail, DecodesEachMemberOnItsOwn) {
  const std::string text = R"({"more":[1],"pendingRequests":[{"id":1}],"items":[{"id":"i","type":"t","timestamp":1}],)"
                           R"("session":)" +
                           session() + "}";
  const auto detail = decodeSessionDetail(text);
  ASSERT_TRUE(detail) << detail.error().message();
  ASSERT_TRUE(detail->items && *detail->items);
  EXPECT_EQ((*detail->items)->front().id, "i");
  ASSERT_TRUE(detail->pendingRequests && !*detail->pendingRequests);
  EXPECT_EQ(detail->pendingRequests->error().message(), "pendingRequests[0].id: expected a string, found a number");
  ASSERT_TRUE(detail->session && *detail->session);
  EXPECT_NE(detail->whole.value().member("more"), nullptr);
}

TEST(SessionDetail, TellsAMissingMemberFromANullOneAndFailsOnlyOnWhatIsNotJson) {
  const auto empty = decodeSessionDetail(R"({"items":null})");
  ASSERT_TRUE(empty);
  ASSERT_TRUE(empty->items && !*empty->items);
  EXPECT_EQ(empty->items->error().message(), "items: expected an array, found null");
  EXPECT_FALSE(empty->pendingRequests);
  const auto list = decodeSessionDetail("[1]");
  ASSERT_TRUE(list);
  EXPECT_FALSE(list->items);
  EXPECT_FALSE(decodeSessionDetail(R"({"items":[{"id":"i","detail":tru}]})"));
  EXPECT_FALSE(decodeSessionDetail(R"({"items":[]} x)"));
}

}  // namespace
}  // namespace varnel::wire
