// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/newsession/new_session_view_state.h"

#include "tests/app/model/model_fixture.h"

namespace varnel::screens {
namespace {

using model::Script;
using model::spinUntil;
using testing::HasSubstr;
namespace answers = model::answers;

constexpr const char* kCatalogue =
    R"({"data":[{"id":"plain"},
    {"id":"two","displayName":"Two","supportedReasoningEfforts":["low","very high"]},
    {"id":"best","displayName":"Best","isDefault":true,"defaultReasoningEffort":"medium",
     "supportedReasoningEfforts":["low","medium"]}]})";
constexpr const char* kProjectList =
    R"({"projects":[{"path":"/root","name":"root","highRisk":true},{"path":"/p","name":"p","highRisk":false}]})";

class NewSession : public model::ModelTest {
 protected:
  void SetUp() override {
    makePaired();
    lists(kCatalogue);
    state = std::make_unique<NewSessionViewState>(*model);
  }
  void TearDown() override { state.reset(); }

  void lists(const char* catalogue) {
    bridge.always("GET", model::kSessions, Script::json(200, answers::sessions({})));
    bridge.always("GET", model::kProjects, Script::json(200, kProjectList));
    bridge.always("GET", model::kModels, Script::json(200, catalogue));
    bridge.always("GET", model::kUsage, Script::json(200, answers::usage(1)));
  }
  void appear() {
    state->appeared();
    ASSERT_TRUE(spinUntil([this] { return model->isRefreshed() && model->usage(); }));
    settle();
  }
  void fill() {
    appear();
    state->setProject(2);
    state->setPrompt(QStringLiteral(" do it\n"));
    ASSERT_TRUE(state->isCreateEnabled());
  }
  [[nodiscard]] std::string sentBody() const {
    for (const auto& request : bridge.requests()) {
      if (request.method == "POST" && request.target == model::kSessions) return request.body;
    }
    return {};
  }

  std::unique_ptr<NewSessionViewState> state;
};

TEST_F(NewSession, AppearingLoadsTheListsAndTakesTheDefaultModel) {
  EXPECT_EQ(state->projects(), QStringList{QStringLiteral("Select a Git worktree")});
  appear();
  EXPECT_EQ(state->projects(),
            (QStringList{QStringLiteral("Select a Git worktree"), QStringLiteral("/root"), QStringLiteral("/p")}));
  EXPECT_EQ(state->models().value(state->model()), QStringLiteral("Best"));
  EXPECT_EQ(state->efforts().value(state->effort()), QStringLiteral("Medium"));
  EXPECT_EQ(state->project(), 0);
}

TEST_F(NewSession, AModelBringsItsEffort) {
  appear();
  state->setEffort(0);
  EXPECT_EQ(state->effort(), 0);
  state->setModel(2);
  EXPECT_EQ(state->efforts(), (QStringList{QStringLiteral("Low"), QStringLiteral("Very High")}));
  EXPECT_EQ(state->effort(), 0) << "the first where no default is named";
  state->setModel(1);
  EXPECT_TRUE(state->efforts().isEmpty());
  state->setModel(0);
  state->setPrompt(QStringLiteral("x"));
  state->setProject(2);
  EXPECT_FALSE(state->isCreateEnabled()) << "no model";
}

TEST_F(NewSession, WithoutADefaultModelNoneIsChosen) {
  lists(R"({"data":[{"id":"plain"}]})");
  appear();
  EXPECT_EQ(state->model(), 0);
}

TEST_F(NewSession, TheButtonWaitsForAProjectAModelAPromptAndTheAcknowledgement) {
  appear();
  EXPECT_FALSE(state->isCreateEnabled());
  state->setProject(1);
  EXPECT_TRUE(state->isHighRisk());
  state->setPrompt(QStringLiteral(" \n "));
  EXPECT_FALSE(state->isCreateEnabled()) << "white space is no prompt";
  state->setPrompt(QStringLiteral("x"));
  EXPECT_FALSE(state->isCreateEnabled());
  state->setAcknowledged(true);
  EXPECT_TRUE(state->isCreateEnabled());
  state->setProject(2);
  EXPECT_FALSE(state->isHighRisk());
  EXPECT_TRUE(state->isAcknowledged()) << "kept, and still sent";
}

TEST_F(NewSession, FullAccessOrNeverAskingIsFlaggedAndBlocksNothing) {
  fill();
  EXPECT_FALSE(state->isUnsafe());
  state->setSandbox(2);
  EXPECT_TRUE(state->isUnsafe());
  EXPECT_TRUE(state->isCreateEnabled());
  state->setSandbox(1);
  state->setApproval(1);
  EXPECT_TRUE(state->isUnsafe());
}

TEST_F(NewSession, ACreatedConversationOpensWithWhatWasChosen) {
  fill();
  bridge.expect("POST", model::kSessions, Script::silence());
  state->create();
  state->create();
  EXPECT_TRUE(state->isCreating());
  EXPECT_FALSE(state->isCreateEnabled());
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", model::kSessions) == 1; }));
  bridge.answer("POST", model::kSessions, Script::json(200, R"({"threadId":"n"})"));
  ASSERT_TRUE(spinUntil([this] { return !state->isCreating(); }));
  EXPECT_EQ(model->selectedSessionId(), "n");
  EXPECT_EQ(state->prompt(), QString());
  EXPECT_FALSE(state->isPromptLost());
  EXPECT_EQ(state->project(), 2) << "the choices stay";
  for (const char* part : {R"("cwd":"/p")", R"("mode":"default")", R"("model":"best")", R"("reasoningEffort":"medium")",
                           R"("sandbox":"workspace-write")", R"("approvalPolicy":"on-request")",
                           R"("acknowledgeHighRisk":false)", R"("prompt":" do it\n")"}) {
    EXPECT_THAT(sentBody(), HasSubstr(part));
  }
  const auto preferences = model->preferences("n");
  ASSERT_TRUE(preferences);
  EXPECT_EQ(preferences->reasoningEffort, "medium");
  EXPECT_EQ(preferences->serviceTier, "default");
}

TEST_F(NewSession, WithoutAnEffortNoPreferencesAreKept) {
  fill();
  state->setModel(1);
  bridge.expect("POST", model::kSessions, Script::json(200, R"({"threadId":"n"})"));
  state->create();
  ASSERT_TRUE(spinUntil([this] { return !state->isCreating(); }));
  EXPECT_THAT(sentBody(), testing::Not(HasSubstr("reasoningEffort")));
  EXPECT_FALSE(model->preferences("n"));
}

TEST_F(NewSession, AFailedCreationClearsThePromptAndKeepsItAtHand) {
  fill();
  bridge.expect("POST", model::kSessions, Script::json(500, R"({"error":"no room"})"));
  state->create();
  ASSERT_TRUE(spinUntil([this] { return !state->isCreating(); }));
  EXPECT_EQ(model->errorText(), QStringLiteral("no room"));
  EXPECT_EQ(model->selectedSessionId(), std::nullopt);
  EXPECT_EQ(state->prompt(), QString());
  ASSERT_TRUE(state->isPromptLost());
  state->setPrompt(QStringLiteral("more"));
  state->restorePrompt();
  EXPECT_EQ(state->prompt(), QStringLiteral(" do it\n\nmore"));
  EXPECT_FALSE(state->isPromptLost());
}

TEST_F(NewSession, AnAnswerAfterTheScreenIsGoneStillOpensTheConversation) {
  fill();
  bridge.expect("POST", model::kSessions, Script::silence());
  state->create();
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", model::kSessions) == 1; }));
  state.reset();
  bridge.answer("POST", model::kSessions, Script::json(200, R"({"threadId":"n"})"));
  EXPECT_TRUE(spinUntil([this] { return model->selectedSessionId() == "n"; }));
}

}  // namespace
}  // namespace varnel::screens
