// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/screens/session/session_fixture.h"

namespace varnel::screens {
namespace {

class Session : public SessionTest {};

TEST_F(Session, OpeningLoadsTheConversationBesideTheListsAndOnceMoreBehindThem) {
  for (const auto* target : {model::kDetail, model::kSessions, model::kProjects, model::kModels}) {
    bridge.expect("GET", target, Script::silence());
  }
  make();
  composer().setMessage(QStringLiteral("x"));
  EXPECT_TRUE(state->transcript()->isLoading());
  EXPECT_EQ(state->title(), QStringLiteral("Session"));
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 4; }));
  bridge.answer("GET", model::kDetail, Script::json(200, detail(hello(), session(true))));
  ASSERT_TRUE(spinUntil([this] { return !state->transcript()->isLoading(); }));
  EXPECT_THAT(texts(), ElementsAre("hello"));
  EXPECT_EQ(state->title(), QStringLiteral("shop"));
  EXPECT_TRUE(state->isWorking());

  bridge.expect("GET", model::kDetail, Script::silence());
  bridge.answer("GET", model::kSessions, Script::json(200, R"({"sessions":[]})"));
  bridge.answer("GET", model::kProjects, Script::json(200, answers::projects("/p")));
  bridge.answer("GET", model::kModels, Script::json(200, kTwoModels));
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 5; }));
  EXPECT_EQ(requests().back(), std::string("GET ") + model::kDetail);
  EXPECT_FALSE(composer().isSendEnabled()) << "what it is sent with is read last";
  bridge.answer("GET", model::kDetail, Script::json(200, detail(hello(), session(false))));
  EXPECT_TRUE(spinUntil([this] { return composer().isSendEnabled(); }));
}

TEST_F(Session, AConversationThatCannotBeLoadedDoesNotLoadForever) {
  for (const auto* target : {model::kDetail, model::kSessions, model::kProjects, model::kModels}) {
    bridge.always("GET", target, Script::json(500, "{}"));
  }
  make();
  EXPECT_TRUE(spinUntil([this] { return !state->transcript()->isLoading(); }));
}

TEST_F(Session, PinningTellsTheBridgeAndRefreshes) {
  open();
  EXPECT_EQ(state->pinLabel(), QStringLiteral("Pin conversation"));
  bridge.always("GET", model::kUsage, Script::json(200, answers::usage(1)));
  bridge.expect("POST", kTrack, Script::json(200, "{}"));
  const int before = bridge.count("GET", model::kSessions);
  state->togglePin();
  ASSERT_TRUE(spinUntil([&] { return bridge.count("GET", model::kSessions) == before + 1; }));
  ASSERT_TRUE(spinUntil([&] { return bridge.count("GET", model::kUsage) == 1; })) << "with the rate limit";
  bridge.expect("POST", kTrack, Script::json(500, R"({"error":"no pin"})"));
  state->togglePin();
  ASSERT_TRUE(spinUntil([this] { return model->hasErrorMessage(); }));
  EXPECT_EQ(model->errorText(), QStringLiteral("no pin"));
}

TEST_F(Session, TheNameIsChangedInADialogThatStartsWithTheNameElseTheProject) {
  open();
  state->beginRename();
  EXPECT_EQ(state->renameText(), QStringLiteral("shop"));
  state->setRenameText(QStringLiteral(" \n"));
  EXPECT_FALSE(state->isRenameEnabled());
  state->saveName();
  EXPECT_TRUE(state->isShowingRename());
  state->setRenameText(QStringLiteral(" Till "));
  bridge.expect("POST", "/v1/sessions/s/name", Script::json(200, "{}"));
  state->saveName();
  EXPECT_FALSE(state->isShowingRename());
  EXPECT_EQ(model->session("s")->name, "Till");
  state->beginRename();
  EXPECT_EQ(state->renameText(), QStringLiteral("Till"));
  EXPECT_TRUE(spinUntil([this] { return bridge.count("POST", "/v1/sessions/s/name") == 1; }));
}

TEST_F(Session, ArchivingLeavesTheConversationOnceTheBridgeHasDoneIt) {
  open();
  const QSignalSpy left(state.get(), &SessionViewState::left);
  bridge.expect("POST", "/v1/sessions/s/archive", Script::json(500, R"({"error":"no"})"));
  state->archive();
  ASSERT_TRUE(spinUntil([this] { return model->hasErrorMessage(); }));
  EXPECT_EQ(left.count(), 0);
  bridge.expect("POST", "/v1/sessions/s/archive", Script::json(200, "{}"));
  state->archive();
  EXPECT_TRUE(spinUntil([&] { return left.count() == 1; }));
}

TEST_F(Session, AnArchivedConversationIsTakenBackFromItsBar) {
  open();
  bridge.expect("GET", "/v1/sessions/archived", Script::json(200, R"({"data":[{"id":"s"}]})"));
  support::await(model->loadArchived(false));
  ASSERT_TRUE(state->isArchived()) << model->errorText().toStdString();
  bridge.expect("POST", "/v1/sessions/s/unarchive", Script::json(200, "{}"));
  state->unarchive();
  EXPECT_TRUE(spinUntil([this] { return !state->isArchived(); }));
}

TEST_F(Session, AnUnansweredRequestKeepsWhatWasUnfoldedAndTypedUntilItIsGone) {
  const auto request = [](const std::string& id, bool resolved) {
    return R"({"id":")" + id + R"(","method":"item/x","sessionId":"s","createdAt":1,"params":{},)" +
           R"("availableDecisions":[],"resolved":)" + (resolved ? "true" : "false") + "}";
  };
  const auto pending = [&](const std::vector<std::string>& requests) {
    std::string list;
    for (const auto& each : requests) list += (list.empty() ? "" : ",") + each;
    return R"({"items":[],"pendingRequests":[)" + list + R"(],"session":)" + session(false) + "}";
  };
  open(session(false), pending({request("1", false), request("2", true), request("3", false)}));
  EXPECT_THAT(column(state->requests(), "requestId"), ElementsAre("1", "3"));
  const auto card = [this](int row) {
    auto* rows = state->requests();
    return rows->index(row, 0).data(rows->roleNames().key("card")).value<PendingRequestCardState*>();
  };
  auto* third = card(1);
  EXPECT_EQ(third->position(), QStringLiteral("2 of 2"));
  third->setShowingDetail(true);
  serve(session(false), pending({request("3", false)}));
  support::await(model->loadSession("s"));
  EXPECT_EQ(state->requestCount(), 1);
  EXPECT_EQ(card(0), third);
  EXPECT_TRUE(third->isShowingDetail());
  EXPECT_EQ(third->position(), QString());
}

TEST_F(Session, ALinkIsShownBeforeItIsOpenedAndOnlyWebAddressesAre) {
  open();
  state->askLink(QStringLiteral("https://ex.org/\u202Egpj"));
  EXPECT_EQ(state->linkAddress(), QStringLiteral("https://ex.org/\\u{202E}gpj"));
  for (const char* refused : {"file:///etc/passwd", "javascript:alert(1)", "varnel://session/x", "https:", "/a", ""}) {
    state->askLink(QLatin1String(refused));
    EXPECT_FALSE(state->linkOpens()) << refused;
    state->openLink();
  }
  EXPECT_TRUE(opened.empty());
  state->askLink(QStringLiteral("HTTPS://ex.org/a"));
  EXPECT_TRUE(state->linkOpens());
  state->openLink();
  EXPECT_EQ(opened, std::vector<QString>{QStringLiteral("https://ex.org/a")});
  EXPECT_EQ(state->linkAddress(), QString());
}

TEST_F(Session, TheResumeCommandNamesTheConversation) {
  open();
  state->copyResumeCommand();
  EXPECT_EQ(copied, QStringLiteral("varnel -- resume s"));
}

TEST_F(Session, ThePlanShowsItsCurrentStepAndCountsWithoutForcing) {
  const auto plan = [this](const std::string& steps, bool completed) {
    const std::string summary = session(false, R"(,"plan":{"steps":[)" + steps + R"(],"completed":)" +
                                                   (completed ? "true" : "false") + R"(,"updatedAt":1})");
    serve(summary, detail(hello(), summary));
    support::await(model->loadSession("s"));
    return state->plan()->title() + QLatin1Char(' ') + state->plan()->progress();
  };
  open();
  EXPECT_FALSE(state->plan()->isPresent());
  const std::string steps =
      R"({"step":"a","status":"completed"},{"step":"Write tests","status":"inProgress"},{"step":"c","status":"pending"})";
  EXPECT_EQ(plan(steps, false), QStringLiteral("Write tests 1/3"));
  EXPECT_EQ(state->plan()->spoken(), QStringLiteral("Plan, 1 of 3 steps complete"));
  EXPECT_EQ(plan(steps, true), QStringLiteral("Plan complete 1/3"));
  EXPECT_EQ(plan("", false), QStringLiteral("Plan 0/0"));
  EXPECT_TRUE(state->plan()->isPresent());
}

}  // namespace
}  // namespace varnel::screens
