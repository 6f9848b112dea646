// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/request_card.h"

#include <gtest/gtest.h>

#include "core/json/text.h"
#include "core/transcript/file_changes.h"

namespace varnel::transcript {
namespace {

using json::JSONValue;

JSONValue value(std::string_view text) {
  auto parsed = json::parse(text);
  EXPECT_TRUE(parsed) << text;
  return parsed.value_or(JSONValue());
}

wire::PendingRequest request(std::string method, std::string_view params = "{}", std::string_view decisions = "[]") {
  return {.id = "r",
          .method = std::move(method),
          .sessionId = "s",
          .params = *value(params).object(),
          .availableDecisions = *value(decisions).array()};
}

TEST(RequestCard, OffersWhatTheAgentOffersInWords) {
  const auto labels = [](std::string_view decisions) {
    std::string result;
    for (const auto& each : scopeOptions(request("x", "{}", decisions)))
      result += each.decision + "=" + each.label + ";";
    return result;
  };
  const auto both = std::vector<std::string>{"accept", "decline"};
  EXPECT_EQ(decisionOptions(request("x")), both);
  EXPECT_EQ(decisionOptions(request("x", "{}", R"([{"accept":1},2,null])")), both);
  EXPECT_EQ(labels(R"(["accept","decline"])"), "");
  EXPECT_EQ(labels(R"(["accept",{"x":1},"acceptForSession","decline"])"),
            "accept=Approve once;acceptForSession=Approve for session;");
  EXPECT_EQ(labels(R"(["acceptAlways","cancel","decline"])"), "acceptAlways=Approve once;");
  EXPECT_TRUE(scopeOptions(request("item/tool/requestUserInput", "{}", R"(["accept","a","b"])")).empty());
}

TEST(RequestCard, TellsQuestionsFromApprovalsAndShowsTheMethodShort) {
  EXPECT_EQ(cardKind("item/tool/requestUserInput"), CardKind::Question);
  EXPECT_EQ(cardKind("requestUserinput"), CardKind::Approval);
  EXPECT_EQ(shownMethod("item/fileChange/requestApproval"), "fileChange/requestApproval");
  EXPECT_EQ(shownMethod("item/item/x/item/"), "x/");
}

TEST(RequestCard, SendsBackWhatEachKindOfApprovalExpects) {
  struct Case {
    std::string method;
    std::string params;
    std::string decision;
    std::string result;
  };
  for (const Case& each : std::vector<Case>{
           {"item/commandExecution/requestApproval", "{}", "decline", R"({"decision":"decline"})"},
           {"item/permissions/requestApproval", R"({"permissions":{"net":true}})", "accept",
            R"({"permissions":{"net":true},"scope":"turn"})"},
           {"item/permissions/requestApproval", R"({"permissions":null})", "accept",
            R"({"permissions":null,"scope":"turn"})"},
           {"item/permissions/requestApproval", R"({"permissions":{"net":true}})", "acceptForSession",
            R"({"permissions":{},"scope":"turn"})"},
           {"permissions", "{}", "accept", R"({"permissions":{},"scope":"turn"})"},
           {"permissions/elicitation", "{}", "decline", R"({"permissions":{},"scope":"turn"})"},
           {"mcpServer/elicitation/request", "{}", "accept", R"({"action":"accept","content":null})"},
       }) {
    EXPECT_EQ(decisionResult(request(each.method, each.params), each.decision), value(each.result)) << each.method;
  }
}

TEST(RequestCard, GivesEveryQuestionTheSameAnswer) {
  const auto result = [](std::string_view params) {
    return questionResult(request("requestUserInput", params), " yes");
  };
  EXPECT_EQ(result("{}"), value(R"({"answers":{"answer":{"answers":[" yes"]}}})"));
  EXPECT_EQ(result(R"({"questions":{"id":"q"}})"), value(R"({"answers":{"answer":{"answers":[" yes"]}}})"));
  EXPECT_EQ(result(R"({"questions":[]})"), value(R"({"answers":{}})"));
  EXPECT_EQ(result(R"({"questions":[{"id":"q1"},{"id":7},"x",{"id":"q2"},{"id":"q1"}]})"),
            value(R"({"answers":{"q1":{"answers":[" yes"]},"q2":{"answers":[" yes"]}}})"));
}

TEST(RequestCard, ReadsTheQuestionsAndTheirOptions) {
  const auto asked = askedQuestions(request("requestUserInput", R"({"questions":[
      {"id":"a","header":"Colour","question":"Which?","options":[{"label":"Red","description":"warm"},"Blue",{"x":1}]},
      {"id":"b"}, 3]})"));
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0],
            (AskedQuestion{.header = "Colour", .question = "Which?", .options = {{"Red", "warm"}, {"Blue", ""}}}));
}

TEST(RequestCard, SaysWhatWillHappenInFull) {
  const auto facts = [](std::string_view params) {
    std::string result;
    for (const auto& fact : requestFacts(request("x", params))) result += fact.label + ": " + fact.text + "\n";
    return result;
  };
  EXPECT_EQ(facts(R"({"command":"rm -rf /tmp/x","cwd":"/home/a","reason":"clean up","other":1})"),
            "Reason: clean up\nCommand: rm -rf /tmp/x\nDirectory: /home/a\n");
  EXPECT_EQ(facts(R"({"command":["sh","-c","echo 'a b'",""]})"), "Command: sh -c 'echo '\\''a b'\\''' ''\n");
  EXPECT_EQ(facts(R"({"changes":[{"path":"a.c","kind":{"type":"add"},"diff":"x"},{"path":"b.c"}]})"),
            "Files: a.c (add)\nb.c\n");
  EXPECT_EQ(facts(R"({"fileChanges":{"/x":{"type":"update","unified_diff":"@@"}}})"), "Files: /x (update)\n");
  EXPECT_EQ(facts(R"({"command":{"a":1},"cwd":3})"), "");
}

TEST(DiffLines, KnowAddedRemovedAndHeadings) {
  const auto signs = [](const FileChange& change) {
    std::string result;
    for (const auto& line : diffLines(change))
      result += std::string(1, " +-@"[static_cast<int>(line.kind)]) + std::string(line.text) + "\n";
    return result;
  };
  EXPECT_EQ(
      signs({.path = "a", .kind = "update", .diff = "--- a\n+++ b\n@@ -1 +1 @@\n-old\n+new\n same\n\n\\ No newline\n"}),
      "@--- a\n@+++ b\n@@@ -1 +1 @@\n-old\n+new\n same\n \n@\\ No newline\n");
  EXPECT_EQ(signs({.path = "a", .kind = "add", .diff = "-x\n+y\n"}), "+-x\n++y\n");
  EXPECT_EQ(signs({.path = "a", .kind = "delete", .diff = "gone"}), "-gone\n");
  EXPECT_EQ(signs({}), "");
}

}  // namespace
}  // namespace varnel::transcript
