// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/screens/session/session_fixture.h"

namespace varnel::screens {
namespace {

constexpr const char* kResolve = "/v1/requests/r/resolve";

class Card : public SessionTest {
 protected:
  void ask(const std::string& method, const std::string& params, const std::string& decisions = "[]") {
    request = R"({"id":"r","method":")" + method + R"(","sessionId":"s","createdAt":1,"params":)" + params +
              R"(,"availableDecisions":)" + decisions + R"(,"resolved":false})";
    open(session(true), R"({"items":[],"pendingRequests":[)" + request + R"(],"session":)" + session(true) + "}");
    ASSERT_EQ(state->requestCount(), 1);
    auto* rows = state->requests();
    card = rows->index(0, 0).data(rows->roleNames().key("card")).value<PendingRequestCardState*>();
  }
  void unfold() {
    card->setShowingDetail(true);
    now += PendingRequestCardState::kCalm;
  }

  std::string request;
  PendingRequestCardState* card = nullptr;
};

TEST_F(Card, NothingIsAnsweredBeforeItIsUnfoldedAndStandsStill) {
  ask("item/commandExecution/requestApproval", R"({"command":"ls"})");
  EXPECT_EQ(card->method(), QStringLiteral("commandExecution/requestApproval"));
  now += std::chrono::hours(1);
  card->approve();
  card->decline();
  card->setShowingDetail(true);
  now += PendingRequestCardState::kCalm - std::chrono::milliseconds(1);
  card->approve();
  card->disturb();
  now += PendingRequestCardState::kCalm - std::chrono::milliseconds(1);
  card->approve();
  settle();
  EXPECT_EQ(bridge.count("POST", kResolve), 0);
  now += std::chrono::milliseconds(1);
  bridge.expect("POST", kResolve, Script::silence());
  card->approve();
  EXPECT_EQ(card->underWay(), PendingRequestCardState::Button::Approve);
  card->approve();
  card->decline();
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", kResolve) == 1; }));
  settle();
  EXPECT_EQ(bridge.count("POST", kResolve), 1);
  EXPECT_EQ(lastBody(), R"({"result":{"decision":"accept"}})");
}

TEST_F(Card, TheChosenScopeIsSentAndAnAnsweredCardGoes) {
  ask("item/fileChange/requestApproval", "{}", R"(["accept","acceptForSession","decline"])");
  EXPECT_EQ(card->scopes().size(), 2);
  unfold();
  card->setSelectedDecision(QStringLiteral("acceptForSession"));
  bridge.expect("POST", kResolve, Script::json(200, "{}"));
  serve(session(true), detail({}, session(true)));
  card->approve();
  EXPECT_TRUE(spinUntil([this] { return state->requestCount() == 0; }));
  EXPECT_TRUE(std::ranges::any_of(bridge.requests(), [](const auto& each) {
    return each.body == R"({"result":{"decision":"acceptForSession"}})";
  }));
}

TEST_F(Card, ARefusalIsReportedTheCardStaysAsItWasAndTheConversationIsReadAgain) {
  ask("item/x", "{}");
  unfold();
  const int loads = bridge.count("GET", model::kDetail);
  bridge.expect("POST", kResolve, Script::json(409, R"({"error":"already answered"})"));
  card->decline();
  ASSERT_TRUE(spinUntil([this] { return card->underWay() == PendingRequestCardState::Button::None; }));
  EXPECT_EQ(model->errorText(), QStringLiteral("already answered"));
  EXPECT_EQ(bridge.count("GET", model::kDetail), loads + 1);
  EXPECT_TRUE(card->isShowingDetail());
  bridge.expect("POST", kResolve, Script::json(200, "{}"));
  const QSignalSpy declined(state.get(), &SessionViewState::declined);
  card->decline();
  EXPECT_TRUE(spinUntil([&] { return declined.count() == 1; }));
}

TEST_F(Card, AQuestionIsAnsweredWithWhatWasTypedOrChosen) {
  ask("item/tool/requestUserInput",
      R"({"questions":[{"id":"a","question":"Which?","options":[{"label":"Blue\u200b"}]},{"id":"b","question":"Why?"}]})");
  EXPECT_TRUE(card->isQuestion());
  const auto option = card->questions().at(0).toMap().value(QStringLiteral("options")).toList().at(0).toMap();
  EXPECT_EQ(option.value(QStringLiteral("shown")).toString(), QStringLiteral("Blue\\u{200B}"));
  EXPECT_NE(card->sharedReply(), QString());
  unfold();
  EXPECT_FALSE(card->isSendEnabled());
  card->setAnswer(option.value(QStringLiteral("label")).toString());
  EXPECT_TRUE(card->isSendEnabled());
  bridge.expect("POST", kResolve, Script::silence());
  card->sendAnswer();
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", kResolve) == 1; }));
  EXPECT_EQ(lastBody(),
            "{\"result\":{\"answers\":{\"a\":{\"answers\":[\"Blue\u200b\"]},\"b\":{\"answers\":[\"Blue\u200b\"]}}}}");
}

TEST_F(Card, WhatCouldDeceiveStandsAsEscapes) {
  ask("item/\u202Ex", R"({"command":"rm \u202etxt.exe\u0007 \u00a0x","cwd":"/tmp"})");
  EXPECT_EQ(card->method(), QStringLiteral("\\u{202E}x"));
  EXPECT_EQ(card->facts().at(0).toMap().value(QStringLiteral("text")).toString(),
            QStringLiteral("rm \\u{202E}txt.exe\\u{07} \\u{A0}x"));
  EXPECT_TRUE(card->details().contains(QStringLiteral("\\u{202E}txt")));
  EXPECT_TRUE(card->details().contains(QStringLiteral("\"cwd\" : \"\\/tmp\"")) ||
              card->details().contains(QStringLiteral("\"cwd\": \"\\/tmp\"")));
}

}  // namespace
}  // namespace varnel::screens
