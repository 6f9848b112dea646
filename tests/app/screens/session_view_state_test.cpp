// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/session_view_state.h"

#include "tests/app/model/model_fixture.h"

namespace varnel::screens {
namespace {

using model::ElementsAre;
using model::Script;
using model::spinUntil;
namespace answers = model::answers;

constexpr const char* kInterrupt = "/v1/sessions/s/interrupt";
constexpr const char* kModelAnswer =
    R"({"data":[{"id":"other","model":"other","displayName":"Other","supportedReasoningEfforts":[{"reasoningEffort":"low"}]},
    {"id":"m","model":"m","displayName":"M","isDefault":true,"defaultReasoningEffort":"medium"}]})";

class Session : public model::ModelTest {
 protected:
  void SetUp() override { makePaired(); }
  void TearDown() override { state.reset(); }

  static std::string summary(bool active) {
    return std::string(R"(,"session":{"id":"s","project":"shop","active":)") + (active ? "true" : "false") +
           R"(,"state":")" + (active ? "working" : "done") + R"(","latestCommentary":"","updatedAt":1,"pinned":false})";
  }

  /// Opens the conversation and waits until it and the models are there.
  void open(bool active) {
    for (int load = 0; load < 2; ++load) {
      expectGet(model::kDetail, answers::detail({answers::item("1", "user", "hello")}, summary(active)));
    }
    expectGet(model::kSessions, R"({"sessions":[{"id":"s","project":"shop","active":)" +
                                    std::string(active ? "true" : "false") +
                                    R"(,"state":"done","latestCommentary":"","updatedAt":1,"pinned":false}]})");
    expectGet(model::kProjects, answers::projects("/p"));
    expectGet(model::kModels, kModelAnswer);
    state = std::make_unique<SessionViewState>(*model, QStringLiteral("s"));
    ASSERT_TRUE(spinUntil([this] { return bridge.count("GET", model::kDetail) == 2; }));
    settle();
    ASSERT_EQ(state->rows()->rowCount(), 1);
  }

  /// What the only row of its kind says.
  [[nodiscard]] std::vector<std::string> spoken() const {
    std::vector<std::string> result;
    auto* rows = state->rows();
    const int role = rows->roleNames().key("spoken");
    for (int row = 0; row < rows->rowCount(); ++row) {
      result.push_back(rows->index(row, 0).data(role).toString().toStdString());
    }
    return result;
  }

  std::unique_ptr<SessionViewState> state;
};

TEST_F(Session, OpeningLoadsTheConversationBesideTheListsAndOnceMoreBehindThem) {
  for (const auto* target : {model::kDetail, model::kSessions, model::kProjects, model::kModels}) {
    bridge.expect("GET", target, Script::silence());
  }
  state = std::make_unique<SessionViewState>(*model, QStringLiteral("s"));
  state->setMessage(QStringLiteral("x"));
  EXPECT_TRUE(state->isLoading());
  EXPECT_EQ(state->title(), QStringLiteral("Session"));
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 4; }));
  bridge.answer("GET", model::kDetail,
                Script::json(200, answers::detail({answers::item("1", "user", "hello")}, summary(true))));
  ASSERT_TRUE(spinUntil([this] { return !state->isLoading(); }));
  EXPECT_THAT(spoken(), ElementsAre("You: hello"));
  EXPECT_EQ(state->title(), QStringLiteral("shop"));
  EXPECT_TRUE(state->isWorking());

  bridge.expect("GET", model::kDetail, Script::silence());
  bridge.answer("GET", model::kSessions, Script::json(200, R"({"sessions":[]})"));
  bridge.answer("GET", model::kProjects, Script::json(200, answers::projects("/p")));
  bridge.answer("GET", model::kModels, Script::json(200, kModelAnswer));
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 5; }));
  EXPECT_EQ(requests().back(), std::string("GET ") + model::kDetail);
  EXPECT_FALSE(state->isSendEnabled()) << "what it is sent with is read last";
  bridge.answer("GET", model::kDetail,
                Script::json(200, answers::detail({answers::item("2", "user", "newer")}, summary(false))));
  ASSERT_TRUE(spinUntil([this] { return state->isSendEnabled(); }));
  EXPECT_THAT(spoken(), testing::Contains("You: newer"));
}

TEST_F(Session, AConversationThatCannotBeLoadedDoesNotLoadForever) {
  for (const auto* target : {model::kDetail, model::kSessions, model::kProjects, model::kModels}) {
    bridge.always("GET", target, Script::json(500, "{}"));
  }
  state = std::make_unique<SessionViewState>(*model, QStringLiteral("s"));
  EXPECT_TRUE(spinUntil([this] { return !state->isLoading(); }));
}

TEST_F(Session, AMessageGoesOutWithTheDefaultModelAndShowsAtOnce) {
  open(false);
  EXPECT_FALSE(state->isSendEnabled()) << "nothing is written yet";
  state->setMessage(QStringLiteral(" \n "));
  EXPECT_FALSE(state->isSendEnabled()) << "white space is nothing";
  state->setMessage(QStringLiteral("  do it\n"));
  EXPECT_TRUE(state->isSendEnabled());
  EXPECT_EQ(state->sendLabel(), QStringLiteral("Send message"));

  bridge.expect("POST", model::kMessages, Script::silence());
  state->sendOrStop();
  EXPECT_EQ(state->message(), QString());
  EXPECT_TRUE(state->isBusy());
  EXPECT_THAT(spoken(), ElementsAre("You: hello", "You: do it"));
  state->setMessage(QStringLiteral("next"));
  state->sendOrStop();
  EXPECT_FALSE(state->isSendEnabled()) << "one at a time";
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", model::kMessages) == 1; }));
  const auto& body = bridge.requests().back().body;
  EXPECT_THAT(body, testing::HasSubstr(R"("text":"do it")"));
  EXPECT_THAT(body, testing::HasSubstr(R"("model":"m")"));
  EXPECT_THAT(body, testing::HasSubstr(R"("reasoningEffort":"medium")"));
}

TEST_F(Session, AFailedMessageComesBackInFrontOfWhatWasTypedSince) {
  open(false);
  bridge.expect("POST", model::kMessages, Script::silence());
  state->setMessage(QStringLiteral("first "));
  state->sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", model::kMessages) == 1; }));
  state->setMessage(QStringLiteral("second"));
  bridge.answer("POST", model::kMessages, Script::json(500, R"({"error":"no"})"));
  ASSERT_TRUE(spinUntil([this] { return !state->isBusy(); }));
  EXPECT_EQ(state->message(), QStringLiteral("first\nsecond"));
  EXPECT_THAT(spoken(), ElementsAre("You: hello"));
  EXPECT_EQ(model->errorText(), QStringLiteral("no"));
}

TEST_F(Session, WhileATaskRunsTheButtonStopsItAndNeverSends) {
  open(true);
  state->setMessage(QStringLiteral("typed"));
  EXPECT_EQ(state->sendLabel(), QStringLiteral("Stop current task"));
  state->send();  // the keyboard's way to send
  bridge.expect("POST", kInterrupt, Script::silence());
  state->sendOrStop();
  state->sendOrStop();
  EXPECT_FALSE(state->isSendEnabled());
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", kInterrupt) == 1; }));
  expectGet(model::kDetail, answers::detail({}, summary(false)));
  bridge.answer("POST", kInterrupt, Script::json(200, "{}"));
  ASSERT_TRUE(spinUntil([this] { return state->sendLabel() == QStringLiteral("Send message"); }));
  EXPECT_EQ(state->message(), QStringLiteral("typed"));
  EXPECT_FALSE(state->isBusy());
}

TEST_F(Session, AFailedStopIsReported) {
  open(true);
  bridge.expect("POST", kInterrupt, Script::json(500, R"({"error":"cannot"})"));
  expectGet(model::kDetail, answers::detail({}, summary(true)));
  state->sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return model->hasErrorMessage(); }));
  EXPECT_EQ(model->errorText(), QStringLiteral("cannot"));
  ASSERT_TRUE(spinUntil([this] { return bridge.count("GET", model::kDetail) == 3; }));
  EXPECT_TRUE(state->isSendEnabled()) << "it can be tried again";
}

TEST_F(Session, AStopOfAForgottenPairingIsNeitherReportedNorFollowedByALoad) {
  open(true);
  bridge.expect("POST", kInterrupt, Script::silence());
  state->sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", kInterrupt) == 1; }));
  model->unpair();
  bridge.answer("POST", kInterrupt, Script::json(500, R"({"error":"cannot"})"));
  ASSERT_TRUE(spinUntil([this] { return !state->isBusy(); }));
  settle();
  EXPECT_FALSE(model->hasErrorMessage());
  EXPECT_EQ(bridge.count("GET", model::kDetail), 2);
}

TEST_F(Session, ClosingWhileSomethingIsUnderWayIsHarmless) {
  open(false);
  bridge.expect("POST", model::kMessages, Script::silence());
  state->setMessage(QStringLiteral("x"));
  state->sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", model::kMessages) == 1; }));
  state.reset();
  bridge.answer("POST", model::kMessages, Script::json(500, R"({"error":"no"})"));
  ASSERT_TRUE(spinUntil([this] { return model->hasErrorMessage(); }));
}

}  // namespace
}  // namespace varnel::screens
