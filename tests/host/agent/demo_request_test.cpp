// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/json/text.h"
#include "tests/host/agent/demo_driver.h"

namespace varnel::agent::demo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using wire::CodexTurnState;

json::JSONValue parsed(const std::string& text) {
  return json::parse(text).value();
}

struct Kind {
  std::string name;
  std::string message;
  std::string method;
  std::string accept;  ///< what the phone sends; empty for the permissions as they were asked
  std::string decline;
  std::vector<std::string> invalid;
  std::string acceptedAnswer;
};

void PrintTo(const Kind& kind, std::ostream* out) {
  *out << kind.name;
}

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> kKinds = {
      {"command",
       "Deploy it please",
       "item/commandExecution/requestApproval",
       R"({"decision":"accept"})",
       R"({"decision":"decline"})",
       {R"({"decision":"approved"})", R"({"decision":"cancel"})", R"({"decision":1})", "{}", "[]", "null"},
       "It is out."},
      {"fileChange",
       "Delete the dead code",
       "item/fileChange/requestApproval",
       R"({"decision":"acceptForSession"})",
       R"({"decision":"decline"})",
       {R"({"action":"accept"})"},
       "It is gone"},
      {"permissions",
       "Install it from the network",
       "item/permissions/requestApproval",
       "",
       R"({"permissions":{},"scope":"turn"})",
       {R"({"permissions":{"network":{"enabled":true},"root":true},"scope":"turn"})", R"({"permissions":{}})",
        R"({"permissions":{},"scope":"ever"})", R"({"permissions":[],"scope":"turn"})", R"({"decision":"accept"})"},
       "The permission ends with this turn"},
      {"elicitation",
       "Put the ticket into the milestone",
       "mcpServer/elicitation/request",
       R"({"action":"accept","content":null})",
       R"({"action":"decline","content":null})",
       {R"({"action":"maybe","content":null})", R"({"content":null})"},
       "is labelled"},
      {"question",
       "Which way? Ask me",
       "item/tool/requestUserInput",
       R"({"answers":{"way":{"answers":["Small steps"]}}})",
       "",
       {R"({"answers":{}})", R"({"answers":{"way":{"answers":[]}}})", R"({"answers":{"way":{"answers":[1]}}})",
        R"({"answers":{"colour":{"answers":["x"]}}})", R"({"answers":{"way":"x"}})", R"({"decision":"accept"})"},
       "**Small steps**"},
  };
  return kKinds;
}

class DemoRequest : public testing::TestWithParam<Kind> {
 protected:
  /// Sends the message and waits for the question.
  wire::PendingRequest ask() {
    id = driver.idle();
    EXPECT_TRUE(driver.call(driver->sendMessage(id, Driver::message(GetParam().message))));
    driver.waitForState(id, CodexTurnState::NeedsInput);
    const Conversation conversation = driver.conversation(id);
    EXPECT_THAT(conversation.pendingRequests, SizeIs(1));
    return conversation.pendingRequests.at(0);
  }

  json::JSONValue acceptance(const wire::PendingRequest& request) {
    if (!GetParam().accept.empty()) return parsed(GetParam().accept);
    return json::JSONValue::Object{{"permissions", request.params.at("permissions")}, {"scope", "turn"}};
  }

  AgentError::Kind failureOf(const std::string& requestId, const json::JSONValue& result) {
    const auto answer = driver.call(driver->resolve(requestId, result));
    EXPECT_FALSE(answer);
    EXPECT_FALSE(answer.error().text.empty());
    return answer.error().kind;
  }

  Driver driver;
  std::string id;
};

TEST_P(DemoRequest, WaitsAndGoesOnWhenAccepted) {
  const wire::PendingRequest request = ask();
  EXPECT_EQ(request.method, GetParam().method);
  EXPECT_EQ(request.sessionId, id);
  EXPECT_EQ(request.turnId, driver.conversation(id).summary.currentTurnId);
  EXPECT_FALSE(request.resolved);
  EXPECT_TRUE(driver.conversation(id).summary.active);
  driver.changes.clear();
  driver.io.run_for(std::chrono::milliseconds(40));
  EXPECT_TRUE(std::ranges::none_of(driver.changes, [&](const Change& change) { return change.sessionId == id; }))
      << "it did not wait";

  ASSERT_TRUE(driver.call(driver->resolve(request.id, acceptance(request))));
  EXPECT_THAT(driver.conversation(id).pendingRequests, IsEmpty());
  EXPECT_EQ(driver.conversation(id).summary.state, CodexTurnState::Working);
  EXPECT_EQ(failureOf(request.id, acceptance(request)), AgentError::Kind::Conflict);
  driver.waitForState(id, CodexTurnState::Done);
  EXPECT_THAT(lastAnswer(driver.conversation(id)), HasSubstr(GetParam().acceptedAnswer));
  EXPECT_EQ(failureOf(request.id, acceptance(request)), AgentError::Kind::Conflict);
}

/// Those that can be refused; a question cannot.
class DemoRefusal : public DemoRequest {};

TEST_P(DemoRefusal, IsTakenForWhatItIs) {
  const wire::PendingRequest request = ask();
  ASSERT_TRUE(driver.call(driver->resolve(request.id, parsed(GetParam().decline))));
  driver.waitForState(id, CodexTurnState::Done);
  const Conversation done = driver.conversation(id);
  EXPECT_THAT(lastAnswer(done), testing::Not(HasSubstr(GetParam().acceptedAnswer)));
  const auto asked = std::ranges::find_if(
      done.items, [&](const auto& item) { return json::JSONValue(item.id) == request.params.at("itemId"); });
  if (asked == done.items.end()) return;
  EXPECT_EQ(asked->status, asked->type == "mcpToolCall" ? "failed" : "declined");
  const json::JSONValue detail = asked->detail->value();
  EXPECT_EQ(*detail.member("status"), json::JSONValue(*asked->status));
  EXPECT_TRUE(detail.member("aggregatedOutput") == nullptr || detail.member("aggregatedOutput")->isNull());
}

TEST_P(DemoRequest, RefusesWhatIsNoAnswerAndStaysOpen) {
  const wire::PendingRequest request = ask();
  for (const std::string& text : GetParam().invalid) {
    EXPECT_EQ(failureOf(request.id, parsed(text)), AgentError::Kind::Invalid) << text;
  }
  EXPECT_EQ(failureOf("req_0", acceptance(request)), AgentError::Kind::NotFound);
  EXPECT_THAT(driver.conversation(id).pendingRequests, SizeIs(1));
}

TEST_P(DemoRequest, GoesAwayWithItsTurn) {
  const wire::PendingRequest request = ask();
  driver.changes.clear();
  ASSERT_TRUE(driver.call(driver->interrupt(id)));
  EXPECT_THAT(driver.conversation(id).pendingRequests, IsEmpty());
  EXPECT_TRUE(std::ranges::any_of(driver.changes, [](const Change& c) { return c.kind == Change::Kind::Request; }));
  EXPECT_EQ(failureOf(request.id, acceptance(request)), AgentError::Kind::Conflict);
}

INSTANTIATE_TEST_SUITE_P(EveryApproval, DemoRefusal, testing::ValuesIn(kinds().begin(), kinds().end() - 1),
                         [](const auto& kind) { return kind.param.name; });
INSTANTIATE_TEST_SUITE_P(EveryKind, DemoRequest, testing::ValuesIn(kinds()),
                         [](const auto& kind) { return kind.param.name; });

TEST(DemoRequests, TheOnesOfTheShowcaseCanBeAnswered) {
  Driver driver;
  std::size_t answered = 0;
  for (const auto& summary : driver.sessions()) {
    for (const auto& request : driver.conversation(summary.id).pendingRequests) {
      const auto kind = std::ranges::find(kinds(), request.method, &Kind::method);
      ASSERT_NE(kind, kinds().end());
      json::JSONValue result = kind->accept.empty()
                                   ? json::JSONValue(json::JSONValue::Object{
                                         {"permissions", request.params.at("permissions")}, {"scope", "turn"}})
                                   : parsed(kind->accept);
      if (kind->name == "question") result = parsed(R"({"answers":{"edit_right":{"answers":["Look only"]}}})");
      EXPECT_LT(request.createdAt, kToday - 60) << "asked before the start";
      ASSERT_TRUE(driver.call(driver->resolve(request.id, result))) << request.method;
      driver.waitForState(summary.id, CodexTurnState::Done);
      ++answered;
    }
  }
  EXPECT_EQ(answered, 5U);
}

TEST(DemoRequests, WhatWasAllowedForTheSessionIsNotAskedAgain) {
  Driver driver;
  const std::string id = driver.idle();
  ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("Deploy it"))));
  driver.waitForState(id, CodexTurnState::NeedsInput);
  const std::string request = driver.conversation(id).pendingRequests.at(0).id;
  ASSERT_TRUE(driver.call(driver->resolve(request, parsed(R"({"decision":"acceptForSession"})"))));
  driver.waitForState(id, CodexTurnState::Done);
  driver.changes.clear();
  ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("Deploy it once more"))));
  driver.waitForState(id, CodexTurnState::Done);
  EXPECT_THAT(lastAnswer(driver.conversation(id)), HasSubstr("It is out."));
  EXPECT_FALSE(std::ranges::any_of(driver.changes, [](const Change& c) { return c.kind == Change::Kind::Request; }));
}

}  // namespace
}  // namespace varnel::agent::demo
