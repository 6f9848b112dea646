// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/archived/archived_sessions_view_state.h"

#include "tests/app/model/model_fixture.h"

namespace varnel::screens {
namespace {

using model::Script;
using model::spinUntil;

constexpr const char* kArchive = "/v1/sessions/archived";

class Archive : public model::ModelTest {
 protected:
  void SetUp() override {
    makePaired();
    state = std::make_unique<ArchivedSessionsViewState>(*model, [this](const QString& id, QObject* parent) {
      return new SessionViewState(*model, id, systemServices(), parent);
    });
  }
  void TearDown() override { state.reset(); }

  [[nodiscard]] std::vector<std::string> titles() const {
    std::vector<std::string> result;
    auto* rows = state->rows();
    const int role = rows->roleNames().key("title");
    for (int row = 0; row < rows->rowCount(); ++row) {
      result.push_back(rows->index(row, 0).data(role).toString().toStdString());
    }
    return result;
  }

  std::unique_ptr<ArchivedSessionsViewState> state;
};

TEST_F(Archive, IsLoadedPageByPageAndFilteredHere) {
  bridge.expect("GET", kArchive, Script::json(200, R"({"data":[{"id":"a","cwd":"/home/u/Proj-A"},
      {"id":"b","name":"Named","cwd":"/x","updatedAt":1736253240}],"nextCursor":"c"})"));
  EXPECT_TRUE(state->isEmpty());
  state->appeared();
  EXPECT_TRUE(state->isLoading());
  EXPECT_FALSE(state->isEmpty());
  ASSERT_TRUE(spinUntil([this] { return !state->isLoading(); }));
  EXPECT_THAT(titles(), testing::ElementsAre("Proj-A", "Named"));
  EXPECT_TRUE(state->hasMore());

  state->setSearch(QStringLiteral("proj"));
  EXPECT_THAT(titles(), testing::ElementsAre("Proj-A"));
  EXPECT_FALSE(state->hasMore()) << "hidden while a text filters";
  state->setSearch(QStringLiteral(" "));
  EXPECT_TRUE(state->isEmpty()) << "a blank is text";
  state->setSearch({});
  EXPECT_TRUE(state->hasMore());

  bridge.expect("GET", std::string(kArchive) + "?cursor=c", Script::json(200, R"({"data":[{"id":"d","cwd":"/"}]})"));
  state->loadMore();
  ASSERT_TRUE(spinUntil([this] { return titles().size() == 3; }));
  EXPECT_EQ(titles().back(), "Conversation");
  settle();
  EXPECT_FALSE(state->hasMore());
}

TEST(ArchivedRows, TitleAndDateComeFromWhatIsKnown) {
  EXPECT_EQ(makeArchivedRow({.id = "a"}).title, QStringLiteral("Conversation"));
  EXPECT_EQ(makeArchivedRow({.id = "a"}).spoken, QStringLiteral("Conversation")) << "without a date only the title";
  const auto row = makeArchivedRow({.id = "a", .name = "n", .updatedAt = 1'736'253'240.0});
  EXPECT_TRUE(row.date.contains(QStringLiteral("2025")));
  EXPECT_FALSE(row.date.contains(QLatin1Char(':'))) << "no time";
}

TEST_F(Archive, WhatIsRestoredLeavesTheList) {
  bridge.expect("GET", kArchive, Script::json(200, R"({"data":[{"id":"s","name":"n"}]})"));
  state->appeared();
  ASSERT_TRUE(spinUntil([this] { return titles().size() == 1; }));
  bridge.expect("POST", "/v1/sessions/s/unarchive", Script::json(200, "{}"));
  expectLists();
  state->unarchive(QStringLiteral("s"));
  ASSERT_TRUE(spinUntil([this] { return state->isEmpty() && model->isRefreshed(); }));
}

TEST_F(Archive, AConversationIsReadInTheSheetAndLeftWithIt) {
  for (const auto* target : {model::kDetail, model::kSessions, model::kProjects, model::kModels}) {
    bridge.always("GET", target, Script::json(500, "{}"));
  }
  state->open(QStringLiteral("s"));
  ASSERT_NE(state->session(), nullptr);
  EXPECT_EQ(state->session()->sessionId(), QStringLiteral("s"));
  state->disappeared();
  EXPECT_EQ(state->session(), nullptr);
  settle();
}

}  // namespace
}  // namespace varnel::screens
