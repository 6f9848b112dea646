// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/session_update.h"

#include <gtest/gtest.h>

namespace varnel::live {
namespace {

constexpr auto* kItem = R"({"id": "i", "type": "agentMessage", "timestamp": 1})";
constexpr auto* kRequest =
    R"({"id": "r", "method": "ask", "sessionId": "s", "createdAt": 1, "params": {}, "availableDecisions": [], "resolved": false})";
constexpr auto* kSession =
    R"({"id": "s", "project": "p", "active": true, "state": "working", "latestCommentary": "", "updatedAt": 1, "pinned": false})";

SessionUpdate updateOf(const std::string& answer) {
  wire::TranscriptItem sent;
  sent.id = "o";
  sent.role = "user";
  sent.text = "hello";
  return updateFrom(wire::decodeSessionDetail(answer).value(), {sent});
}

std::string answerWith(const std::string& items, const std::string& requests, const std::string& session) {
  return R"({"items": )" + items + R"(, "pendingRequests": )" + requests + session + "}";
}

std::string list(const std::string& element) {
  return "[" + element + "]";
}

TEST(SessionUpdate, AWholeAnswerChangesEverything) {
  const auto update = updateOf(answerWith(list(kItem), list(kRequest), std::string(R"(, "session": )") + kSession));
  ASSERT_TRUE(update.transcript && update.pendingRequests && update.session);
  EXPECT_EQ(update.transcript->items.size(), 2U);
  EXPECT_EQ(update.transcript->remainingOptimistic.size(), 1U);
  EXPECT_EQ(update.pendingRequests->at(0).id, "r");
  EXPECT_EQ(update.session->id, "s");
  EXPECT_TRUE(update.contact);
}

TEST(SessionUpdate, AMissingOrUnreadableSessionIsIgnored) {
  for (const auto* session : {"", R"(, "session": null)", R"(, "session": {"id": "s"})"}) {
    const auto update = updateOf(answerWith(list(kItem), "[]", session));
    EXPECT_TRUE(update.transcript && update.pendingRequests && update.contact) << session;
    EXPECT_FALSE(update.session) << session;
  }
}

TEST(SessionUpdate, AnAnswerOfAnotherShapeIsOnlyASignOfLife) {
  for (const std::string answer : {"[]", "null", "3", "{}", R"({"items": []})", R"({"pendingRequests": []})"}) {
    const auto update = updateOf(answer);
    EXPECT_FALSE(update.transcript || update.pendingRequests || update.session) << answer;
    EXPECT_TRUE(update.contact) << answer;
  }
}

TEST(SessionUpdate, UnreadableItemsVoidTheAnswer) {
  const auto update =
      updateOf(answerWith(R"([{"id": 1}])", list(kRequest), std::string(R"(, "session": )") + kSession));
  EXPECT_FALSE(update.transcript || update.pendingRequests || update.session || update.contact);
}

TEST(SessionUpdate, UnreadableRequestsLeaveTheTranscript) {
  const auto update = updateOf(answerWith(list(kItem), R"([{"id": 1}])", std::string(R"(, "session": )") + kSession));
  EXPECT_TRUE(update.transcript.has_value());
  EXPECT_FALSE(update.pendingRequests || update.session || update.contact);
}

TEST(Place, ReplacesTheFirstOfThatIdElseAppends) {
  const auto summary = [](std::string id, std::string project) {
    wire::SessionSummary result;
    result.id = std::move(id);
    result.project = std::move(project);
    return result;
  };
  std::vector<wire::SessionSummary> sessions{summary("a", "1"), summary("b", "1"), summary("b", "2")};
  EXPECT_TRUE(place(sessions, summary("b", "new")));
  EXPECT_EQ(sessions, (std::vector{summary("a", "1"), summary("b", "new"), summary("b", "2")}));
  EXPECT_FALSE(place(sessions, summary("b", "new")));
  EXPECT_TRUE(place(sessions, summary("c", "new")));
  EXPECT_EQ(sessions.back(), summary("c", "new"));
  EXPECT_EQ(sessions.size(), 4U);
}

}  // namespace
}  // namespace varnel::live
