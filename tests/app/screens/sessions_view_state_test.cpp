// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/sessions_view_state.h"

#include <QtTest/QAbstractItemModelTester>

#include "app/platform/defaults_store_memory.h"
#include "tests/app/model/model_fixture.h"

namespace varnel::screens {
namespace {

using model::spinUntil;
using support::await;
namespace answers = model::answers;

class Sessions : public model::ModelTest {
 protected:
  void SetUp() override { makePaired(); }
  void TearDown() override { state.reset(); }

  void make() {
    state = std::make_unique<SessionsViewState>(*model, surroundings());
    tester = std::make_unique<QAbstractItemModelTester>(state->rows(),
                                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  }

  [[nodiscard]] ScreenSurroundings surroundings() {
    return {.now = [this] { return clock->now; },
            .clipboard = [] { return QString(); },
            .defaults = own,
            .draftOf = [this](const std::string& id) { return drafts[id]; }};
  }

  void refresh(const std::string& sessions) {
    expectGet(model::kSessions, sessions);
    expectGet(model::kProjects, answers::projects("/p"));
    expectGet(model::kModels, answers::models("m"));
    await(model->refresh(false));
  }

  [[nodiscard]] std::string at(int row, const char* role) const {
    auto* rows = state->rows();
    return rows->index(row, 0).data(rows->roleNames().key(role)).toString().toStdString();
  }

  std::shared_ptr<platform::MemoryDefaultsStore> own = std::make_shared<platform::MemoryDefaultsStore>();
  std::map<std::string, QString> drafts;
  std::unique_ptr<SessionsViewState> state;
  std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(Sessions, RowsSayEverythingInWords) {
  make();
  EXPECT_TRUE(state->isLoading());
  EXPECT_FALSE(state->isEmpty());
  refresh(R"({"sessions":[
    {"id":"a","name":"n","project":"shop","active":true,"state":"needsInput","latestCommentary":"May I\n\n run it?",
     "updatedAt":880,"pinned":true,"tracked":true},
    {"id":"b","project":"docs","active":false,"state":"stale","latestCommentary":"","updatedAt":1,"pinned":false}]})");
  ASSERT_EQ(state->rows()->rowCount(), 2);
  EXPECT_FALSE(state->isLoading());
  EXPECT_EQ(at(0, "project"), "shop") << "the project, not the name";
  EXPECT_EQ(at(0, "stateWord"), "Needs input");
  EXPECT_EQ(at(0, "stateTone"), "orange");
  EXPECT_EQ(at(0, "spoken"), "shop, Needs input, Pinned, Live, May I run it?, 2 minutes ago");
  EXPECT_EQ(at(1, "spoken"), "docs, Stale, 16 minutes ago");
}

TEST_F(Sessions, AnEmptyListIsToldFromOneThatHasNotCome) {
  make();
  refresh(R"({"sessions":[]})");
  EXPECT_TRUE(state->isEmpty());
  EXPECT_FALSE(state->isLoading());
}

TEST_F(Sessions, AFailedRefreshEndsTheWaitAndAnotherPairingWaitsAnew) {
  make();
  int told = 0;
  QObject::connect(state.get(), &SessionsViewState::rowsChanged, state.get(), [&told] { ++told; });
  for (const auto* list : {model::kSessions, model::kProjects, model::kModels}) {
    bridge.expect("GET", list, model::Script::json(500, "{}"));
  }
  await(model->refresh(false));
  EXPECT_FALSE(state->isLoading());
  EXPECT_TRUE(state->isEmpty());
  EXPECT_EQ(told, 1);

  refresh(answers::sessions({answers::summary("s")}));
  EXPECT_FALSE(state->isEmpty());
  model->unpair();
  bridge.expect("POST", model::kClaim, model::Script::json(200, R"({"deviceId":"d","token":"t"})"));
  expectStream(0);
  expectFullRefresh();
  auto pairing = model->pair(QString::fromStdString(answers::code(1, bridge.baseURL())));
  await(std::move(pairing));
  EXPECT_TRUE(state->isLoading()) << "what was known of the former bridge says nothing of this one";
  EXPECT_FALSE(state->isEmpty());
  ASSERT_TRUE(spinUntil([this] { return model->isRefreshed() && model->usage(); }));
  EXPECT_FALSE(state->isLoading());
}

TEST_F(Sessions, TheConnectionIsSaidAsItIs) {
  make();
  EXPECT_EQ(state->connection()->text(), QStringLiteral("Reconnecting…"));
  EXPECT_EQ(state->connection()->tone(), QStringLiteral("orange"));
  EXPECT_EQ(state->connection()->lastContact(), QString());
  refresh(answers::sessions({answers::summary("s")}));
  EXPECT_EQ(state->connection()->text(), QStringLiteral("Connected to your computer"));
  EXPECT_EQ(state->connection()->tone(), QStringLiteral("green"));
  clock->now += 180;
  EXPECT_EQ(state->connection()->lastContact(), QStringLiteral("3 minutes ago"));
  model->stop();
  EXPECT_EQ(state->connection()->text(), QStringLiteral("Reconnecting…"));
}

TEST_F(Sessions, AChosenConversationOpensAndTheWishIsCleared) {
  model->selectSession("cold");
  make();
  EXPECT_EQ(state->openId(), QStringLiteral("cold")) << "a wish from before the list counts";
  state->open(QStringLiteral("a"));
  EXPECT_EQ(state->openId(), QStringLiteral("a"));
  model->selectSession("b");
  EXPECT_EQ(state->openId(), QStringLiteral("b")) << "a link replaces what is open";
  EXPECT_EQ(model->selectedSessionId(), std::nullopt);
  model->unpair();
  EXPECT_EQ(state->openId(), QString()) << "nothing of the former pairing stays open";
}

TEST_F(Sessions, RefreshingTwiceAtOnceAsksOnce) {
  make();
  expectFullRefresh();
  state->refresh();
  state->refresh();
  EXPECT_TRUE(state->isRefreshing());
  ASSERT_TRUE(spinUntil([this] { return !state->isRefreshing() && model->usage(); }));
  EXPECT_EQ(bridge.count("GET", model::kSessions), 1);
}

TEST_F(Sessions, SilenceIsSaidAfterHalfAMinute) {
  make();
  EXPECT_EQ(state->connection()->notice(), QString());
  clock->now += 29;
  EXPECT_EQ(state->connection()->notice(), QString());
  clock->now += 1;
  EXPECT_THAT(state->connection()->notice().toStdString(), testing::StartsWith("Host not reachable since "));
  refresh(answers::sessions({answers::summary("s")}));
  clock->now += 3600;
  EXPECT_EQ(state->connection()->notice(), QString()) << "a quiet connection is one";
  model->stop();
  EXPECT_FALSE(state->connection()->notice().isEmpty());
}

TEST_F(Sessions, ARefusedTokenStandsBesideTheConnectionAndCanBeTriedAgain) {
  make();
  for (const auto* list : {model::kSessions, model::kProjects, model::kModels}) {
    bridge.expect("GET", list, model::Script::json(401, "{}"));
  }
  await(model->refresh(false));
  EXPECT_EQ(state->connection()->text(), QStringLiteral("Reconnecting…")) << "the row keeps its words";
  EXPECT_EQ(state->connection()->notice(), QStringLiteral("Revoked: pair again"));
  expectStream(0);
  expectFullRefresh();
  state->connection()->reconnect();
  ASSERT_TRUE(spinUntil([this] { return model->isConnected() && model->usage(); }));
  EXPECT_EQ(state->connection()->notice(), QString());
}

TEST_F(Sessions, TheSearchWaitsForTheTypingToRest) {
  make();
  auto* search = state->search();
  bridge.expect("GET", "/v1/search?q=abc", model::Script::json(200, R"({"data":[
    {"snippet":"whole","thread":{"id":"x","cwd":"/home/u/proj/"},"occurrences":[{"itemId":"i","snippet":"there","turnId":"t","turnCursor":"c"}]},
    {"snippet":"own","thread":{"id":"y","archived":true},"occurrences":[]}],"nextCursor":"n"})"));
  for (const char* text : {"a", "ab", "abc"}) search->setText(QLatin1String(text));
  EXPECT_TRUE(search->isShown());
  EXPECT_FALSE(search->isSearching()) << "nothing is asked yet";
  ASSERT_TRUE(spinUntil([search] { return !search->isEmpty(); }));
  auto* rows = search->rows();
  const auto row = [&](int index, const char* role) {
    return rows->index(index, 0).data(rows->roleNames().key(role)).toString().toStdString();
  };
  EXPECT_EQ(row(0, "title") + "/" + row(0, "snippet"), "proj/there");
  EXPECT_EQ(row(1, "spoken"), "Conversation, Archived, own");
  EXPECT_TRUE(search->hasMore());

  search->open(0);
  EXPECT_EQ(state->openId(), QStringLiteral("x"));
  EXPECT_EQ(model->selectedTranscriptItemId(), "i");
  search->open(1);
  EXPECT_EQ(model->selectedTranscriptItemId(), std::nullopt);
  search->setText({});
  EXPECT_FALSE(search->isShown());
  ASSERT_TRUE(spinUntil([search] { return search->isEmpty(); })) << "a search for nothing clears the results";
  search->setText(QStringLiteral(" "));
  EXPECT_TRUE(search->isShown()) << "one blank is text";
}

TEST_F(Sessions, PinningAsksForTheOppositeThenRefreshes) {
  make();
  refresh(answers::sessions({answers::summary("s")}));
  bridge.expect("POST", "/v1/tracking", model::Script::json(200, "{}"));
  expectFullRefresh();
  state->actions()->pin(QStringLiteral("s"));
  ASSERT_TRUE(spinUntil([this] { return bridge.count("GET", model::kSessions) == 2 && model->usage(); }));
  for (const auto& request : bridge.requests()) {
    if (request.target == "/v1/tracking") {
      EXPECT_THAT(request.body, testing::HasSubstr(R"("pin":true)"));
    }
  }
  bridge.expect("POST", "/v1/tracking", model::Script::json(500, R"({"error":"cannot pin"})"));
  state->actions()->pin(QStringLiteral("s"));
  ASSERT_TRUE(spinUntil([this] { return model->hasErrorMessage(); }));
  EXPECT_EQ(model->errorText(), QStringLiteral("cannot pin"));
}

TEST_F(Sessions, RenamingBeginsWithTheNameOrTheProject) {
  make();
  refresh(R"({"sessions":[
    {"id":"a","name":"n","project":"p","active":false,"state":"done","latestCommentary":"","updatedAt":1,"pinned":false},
    {"id":"b","project":"q","active":true,"state":"working","latestCommentary":"","updatedAt":1,"pinned":false}]})");
  auto* actions = state->actions();
  actions->startRename(QStringLiteral("a"));
  EXPECT_EQ(actions->renameText(), QStringLiteral("n"));
  actions->cancelRename();
  EXPECT_FALSE(actions->isRenaming());
  actions->saveRename(QStringLiteral("late"));  // nothing is being renamed: no request
  actions->startRename(QStringLiteral("b"));
  EXPECT_EQ(actions->renameText(), QStringLiteral("q"));
  bridge.expect("POST", "/v1/sessions/b/name", model::Script::json(200, "{}"));
  actions->saveRename(QStringLiteral(" new "));
  EXPECT_FALSE(actions->isRenaming());
  EXPECT_EQ(at(1, "project"), "new") << "shown at once";
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", "/v1/sessions/b/name") == 1; }));
  actions->archive(QStringLiteral("b"));
  settle();  // a conversation at work is not archived: no request
}

TEST_F(Sessions, ArchivingIsTakenBackByUndo) {
  make();
  refresh(R"({"sessions":[{"id":"s","project":"p","active":false,"state":"done","latestCommentary":"","updatedAt":1,
    "pinned":false}]})");
  bridge.expect("POST", "/v1/sessions/s/archive", model::Script::json(200, "{}"));
  state->actions()->archive(QStringLiteral("s"));
  ASSERT_TRUE(spinUntil([this] { return state->actions()->isUndoShown(); }));
  EXPECT_TRUE(state->isEmpty());
  bridge.expect("POST", "/v1/sessions/s/unarchive", model::Script::json(200, "{}"));
  expectLists();
  state->actions()->undoArchive();
  EXPECT_FALSE(state->actions()->isUndoShown());
  ASSERT_TRUE(spinUntil([this] { return !state->isEmpty(); }));
}

TEST_F(Sessions, WhatMovedOnSinceItWasSeenHasADot) {
  make();
  const auto list = [](double a, double b) {
    return R"({"sessions":[{"id":"a","project":"p","active":false,"state":"done","latestCommentary":"","updatedAt":)" +
           std::to_string(a) +
           R"(,"pinned":false},{"id":"b","project":"q","active":false,"state":"done","latestCommentary":"","updatedAt":)" +
           std::to_string(b) + R"(,"pinned":false}]})";
  };
  drafts["b"] = QStringLiteral("half a\nthought");
  refresh(list(1, 1));
  EXPECT_EQ(at(0, "unread"), "false") << "the first list is the past";
  EXPECT_EQ(at(1, "draft"), "half a thought");
  refresh(list(2, 1));
  EXPECT_EQ(at(0, "unread"), "true");
  state->open(QStringLiteral("a"));
  EXPECT_EQ(at(0, "unread"), "false");
  refresh(list(3, 1));
  EXPECT_EQ(at(0, "unread"), "false") << "it is being looked at";
  state->open(QStringLiteral("b"));
  refresh(list(4, 9));
  EXPECT_EQ(at(0, "unread"), "true");
  make();
  EXPECT_EQ(at(0, "unread"), "true") << "also in the next run";
  EXPECT_EQ(at(1, "unread"), "false");
}

TEST_F(Sessions, KeysGoFromConversationToConversation) {
  make();
  const auto one = [](const char* id, const char* state) {
    return std::string(R"({"id":")") + id + R"(","project":"p","active":false,"state":")" + state +
           R"(","latestCommentary":"","updatedAt":1,"pinned":false})";
  };
  refresh(answers::sessions({one("a", "needsInput"), one("b", "done"), one("c", "needsInput")}));
  state->openNeighbour(1);
  EXPECT_EQ(state->openId(), QStringLiteral("a")) << "the first when none is open";
  state->openNeighbour(-1);
  EXPECT_EQ(state->openId(), QStringLiteral("a"));
  state->openNextNeedingInput();
  EXPECT_EQ(state->openId(), QStringLiteral("c"));
  state->openNextNeedingInput();
  EXPECT_EQ(state->openId(), QStringLiteral("a"));
}

}  // namespace
}  // namespace varnel::screens
