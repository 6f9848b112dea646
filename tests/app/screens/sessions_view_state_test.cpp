// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/sessions_view_state.h"

#include <QtTest/QAbstractItemModelTester>

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
    state = std::make_unique<SessionsViewState>(*model, [this] { return clock->now; });
    tester = std::make_unique<QAbstractItemModelTester>(state->rows(),
                                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
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
  EXPECT_EQ(state->connectionText(), QStringLiteral("Reconnecting…"));
  EXPECT_EQ(state->connectionTone(), QStringLiteral("orange"));
  EXPECT_EQ(state->lastContact(), QString());
  refresh(answers::sessions({answers::summary("s")}));
  EXPECT_EQ(state->connectionText(), QStringLiteral("Connected to your host"));
  EXPECT_EQ(state->connectionTone(), QStringLiteral("green"));
  clock->now += 180;
  EXPECT_EQ(state->lastContact(), QStringLiteral("3 minutes ago"));
  model->stop();
  EXPECT_EQ(state->connectionText(), QStringLiteral("Reconnecting…"));
}

TEST_F(Sessions, AChosenConversationOpensAndTheWishIsCleared) {
  make();
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

}  // namespace
}  // namespace varnel::screens
