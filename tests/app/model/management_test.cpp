// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

/// Renaming, archiving and searching.
class Management : public ModelTest {
 protected:
  void SetUp() override {
    makePaired();
    expectGet(kSessions, answers::sessions({answers::summary("a"), answers::summary("s"), answers::summary("z")}));
    expectGet(kProjects, answers::projects("/p"));
    expectGet(kModels, answers::models("m"));
    await(model->refresh(false));
    log.clear();
  }

  static std::string queryTarget(const std::string& query, const std::string& cursor = "") {
    return "/v1/search?q=" + query + (cursor.empty() ? "" : "&cursor=" + cursor);
  }
  [[nodiscard]] std::vector<std::string> resultIds() const {
    std::vector<std::string> ids;
    for (const auto& result : model->searchResults()) ids.push_back(result.thread.id);
    return ids;
  }
  [[nodiscard]] std::vector<std::string> archivedIds() const {
    std::vector<std::string> ids;
    for (const auto& session : model->archivedSessions()) ids.push_back(session.id);
    return ids;
  }
};

TEST_F(Management, ANewNameShowsAtOnceAndStays) {
  bridge.expect("POST", kName, Script::json(200, "{}"));
  EXPECT_TRUE(await(model->rename("s", " \n New name\t")));
  EXPECT_THAT(log, ElementsAre("sessions", "POST /v1/sessions/s/name")) << "nothing is loaded";
  EXPECT_EQ(bridge.requests().back().body, R"({"name":"New name"})");
  EXPECT_EQ(model->session("s")->name, "New name");
  EXPECT_EQ(model->session("s")->project, "New name");
  EXPECT_THAT(sessionIds(), ElementsAre("a", "s", "z"));
}

TEST_F(Management, ARefusedNameIsTakenBackAndReported) {
  const auto before = model->sessions();
  bridge.expect("POST", kName, Script::json(400, R"({"error":"Too long."})"));
  EXPECT_FALSE(await(model->rename("s", "New")));
  EXPECT_EQ(model->sessions(), before);
  EXPECT_THAT(log, ElementsAre("sessions", "POST /v1/sessions/s/name", "sessions", "error Too long."));
}

TEST_F(Management, ARefusedNameOfAConversationThatHasGoneRestoresNothing) {
  bridge.expect("POST", kName, Script::silence());
  auto renaming = model->rename("s", "New");
  ASSERT_TRUE(waitFor("POST /v1/sessions/s/name"));
  expectLists("a");
  await(model->refresh(false));
  bridge.answer("POST", kName, Script::json(400, R"({"error":"no"})"));
  EXPECT_FALSE(await(std::move(renaming)));
  EXPECT_THAT(sessionIds(), ElementsAre("a"));
}

TEST_F(Management, ABlankNameAndAnUnlistedConversationSendNothing) {
  EXPECT_FALSE(await(model->rename("s", " \n\u2003")));
  EXPECT_FALSE(await(model->rename("unknown", "New")));
  settle();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(Management, ArchivingRemovesTheConversationAndEndsTheLiveActivity) {
  bridge.expect("POST", kArchive, Script::json(409, R"({"error":"It runs."})"));
  EXPECT_FALSE(await(model->archive("s")));
  EXPECT_THAT(log, ElementsAre("POST /v1/sessions/s/archive", "error It runs."));
  EXPECT_THAT(sessionIds(), ElementsAre("a", "s", "z"));
  log.clear();
  bridge.expect("POST", kArchive, Script::json(200, "{}"));
  EXPECT_TRUE(await(model->archive("s")));
  EXPECT_THAT(log, ElementsAre("POST /v1/sessions/s/archive", "sessions", "activity cleared"));
  EXPECT_EQ(bridge.requests().back().body, "{}");
  EXPECT_THAT(sessionIds(), ElementsAre("a", "z"));
}

TEST_F(Management, UnarchivingTakesItOffThePageAndRefreshesTheLists) {
  expectGet(kArchived, answers::archived({"s", "t", "s"}, "more"));
  await(model->loadArchived(false));
  log.clear();
  bridge.expect("POST", kUnarchive, Script::json(200, "{}"));
  expectLists("s");
  EXPECT_TRUE(await(model->unarchive("s")));
  EXPECT_THAT(logged(0, 3), ElementsAre("POST /v1/sessions/s/unarchive", "archivedSessions", "archivedSessionIds"));
  EXPECT_EQ(bridge.count("GET", kUsage), 0);
  EXPECT_THAT(archivedIds(), ElementsAre("t"));
  EXPECT_THAT(model->archivedSessionIds(), ElementsAre("t"));
  EXPECT_EQ(model->archivedNextCursor(), "more");
  EXPECT_THAT(sessionIds(), ElementsAre("s"));

  bridge.expect("POST", "/v1/sessions/t/unarchive", Script::json(500, R"({"error":"no"})"));
  EXPECT_FALSE(await(model->unarchive("t")));
  EXPECT_THAT(archivedIds(), ElementsAre("t"));
  EXPECT_EQ(model->errorText(), QStringLiteral("no"));
}

TEST_F(Management, TheArchiveIsLoadedPageByPageAndAnew) {
  expectGet(kArchived, answers::archived({"1", "2"}, "c 2"));
  await(model->loadArchived(false));
  EXPECT_THAT(log,
              ElementsAre("GET /v1/sessions/archived", "archivedSessions", "archivedNextCursor", "archivedSessionIds"));
  expectGet(std::string(kArchived) + "?cursor=c%202", answers::archived({"3"}));
  await(model->loadArchived(true));
  EXPECT_THAT(archivedIds(), ElementsAre("1", "2", "3"));
  EXPECT_THAT(model->archivedSessionIds(), UnorderedElementsAre("1", "2", "3"));
  EXPECT_FALSE(model->archivedNextCursor());

  bridge.expect("GET", kArchived, Script::json(500, R"({"error":"no"})"));
  await(model->loadArchived(false));
  EXPECT_EQ(model->errorText(), QStringLiteral("no"));
  EXPECT_THAT(archivedIds(), ElementsAre("1", "2", "3")) << "stays as it was";
  expectGet(kArchived, answers::archived({"1"}, "c"));
  await(model->loadArchived(false));
  EXPECT_THAT(archivedIds(), ElementsAre("1"));
}

TEST_F(Management, ASearchPublishesItsFirstPageAndGoesOnFromThere) {
  expectGet(queryTarget("two%20words"), answers::found({"1"}, "next"));
  await(model->search(" two words\n"));
  EXPECT_THAT(log, ElementsAre("searching", "GET " + queryTarget("two%20words"), "searchResults", "searchNextCursor",
                               "searched"));
  EXPECT_EQ(model->currentSearchQuery(), "two words");
  expectGet(queryTarget("two%20words", "next"), answers::found({"2"}));
  await(model->loadMoreSearchResults());
  EXPECT_THAT(resultIds(), ElementsAre("1", "2"));
  EXPECT_FALSE(model->searchNextCursor() || model->isSearching());
  log.clear();
  await(model->loadMoreSearchResults());
  settle();
  EXPECT_THAT(log, IsEmpty()) << "there is no more";
}

TEST_F(Management, ABlankSearchClearsWithoutARequestAndKeepsTheQuery) {
  expectGet(queryTarget("q"), answers::found({"1"}, "next"));
  await(model->search("q"));
  log.clear();
  await(model->search(" \n"));
  settle();
  EXPECT_THAT(log, ElementsAre("searchResults", "searchNextCursor"));
  EXPECT_FALSE(model->isSearching());
  EXPECT_EQ(model->currentSearchQuery(), "q");
}

TEST_F(Management, OfTwoSearchesTheLaterOneIsShown) {
  bridge.expect("GET", queryTarget("one"), Script::silence());
  bridge.expect("GET", queryTarget("two"), Script::silence());
  const auto first = model->search("one");
  const auto second = model->search("two");
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 2; }));
  log.clear();
  bridge.answer("GET", queryTarget("one"), Script::json(200, answers::found({"1"})));
  ASSERT_TRUE(spinUntil([&] { return first.isReady(); }));
  EXPECT_THAT(log, ElementsAre("searched")) << "the page is dropped, though it ends the search";
  await(model->loadMoreSearchResults());
  bridge.answer("GET", queryTarget("two"), Script::json(200, answers::found({"2"})));
  ASSERT_TRUE(spinUntil([&] { return second.isReady(); }));
  EXPECT_THAT(resultIds(), ElementsAre("2"));
}

TEST_F(Management, AFailedSearchIsReportedAndKeepsTheResults) {
  expectGet(queryTarget("q"), answers::found({"1"}, "next"));
  await(model->search("q"));
  bridge.expect("GET", queryTarget("q", "next"), Script::json(500, R"({"error":"no index"})"));
  await(model->loadMoreSearchResults());
  EXPECT_EQ(model->errorText(), QStringLiteral("no index"));
  EXPECT_EQ(model->searchNextCursor(), "next");
  bridge.expect("GET", queryTarget("r"), Script::json(500, R"({"error":"no index either"})"));
  log.clear();
  await(model->search("r"));
  EXPECT_THAT(log, ElementsAre("searching", "GET " + queryTarget("r"), "error no index either", "searched"));
  EXPECT_THAT(resultIds(), ElementsAre("1"));
}

TEST_F(Management, MoreIsNotAskedForWhileASearchRuns) {
  expectGet(queryTarget("q"), answers::found({"1"}, "next"));
  await(model->search("q"));
  bridge.expect("GET", queryTarget("q", "next"), Script::silence());
  const auto more = model->loadMoreSearchResults();
  await(model->loadMoreSearchResults());
  ASSERT_TRUE(waitFor("GET " + queryTarget("q", "next")));
  EXPECT_EQ(bridge.count("GET", queryTarget("q", "next")), 1);
}

TEST_F(Management, UnpairingEndsWhatIsUnderWayInSilence) {
  expectGet(kArchived, answers::archived({"1"}, "c"));
  await(model->loadArchived(false));
  for (const auto* target : {kName, kArchive, kUnarchive, kTracking}) bridge.expect("POST", target, Script::silence());
  bridge.expect("GET", queryTarget("q"), Script::silence());
  bridge.expect("GET", std::string(kArchived) + "?cursor=c", Script::silence());
  auto renaming = model->rename("s", "New");
  auto archiving = model->archive("s");
  auto unarchiving = model->unarchive("s");
  const auto clearing = model->clearActivity();
  const auto searching = model->search("q");
  const auto loading = model->loadArchived(true);
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 7; }));
  model->unpair();
  EXPECT_TRUE(model->isSearching()) << "until the search has ended";
  log.clear();
  EXPECT_FALSE(await(std::move(renaming)));
  EXPECT_FALSE(await(std::move(archiving)));
  EXPECT_FALSE(await(std::move(unarchiving)));
  ASSERT_TRUE(spinUntil([&] { return clearing.isReady() && searching.isReady() && loading.isReady(); }));
  EXPECT_THAT(log, ElementsAre("searched"));
  EXPECT_THAT(model->sessions(), IsEmpty());
}

TEST_F(Management, ClearingTheActivityEndsItWhateverTheBridgeSaysAndRefreshesAll) {
  bridge.expect("POST", kTracking, Script::json(500, R"({"error":"no"})"));
  expectFullRefresh();
  await(model->clearActivity());
  EXPECT_EQ(bridge.requests().at(3).body, R"({"pin":false,"action":"clear"})");
  EXPECT_EQ(log.at(0), "POST /v1/tracking");
  EXPECT_EQ(log.at(1), "activity cleared");
  ASSERT_TRUE(spinUntil([this] { return model->usage().has_value(); }));
  EXPECT_FALSE(model->hasErrorMessage());
}

TEST_F(Management, ALinkSelectsAConversationAndLoadsIt) {
  expectGet("/v1/sessions/a%20b", answers::detail({}));
  model->handle("varnel://session/a%20b");
  EXPECT_EQ(model->selectedSessionId(), "a b");
  ASSERT_TRUE(waitFor("pendingRequests a b"));
  log.clear();
  model->handle("varnel://elsewhere/x");
  model->handle("https://session/x");
  EXPECT_EQ(model->selectedSessionId(), "a b");
  model->handle("varnel://session");
  EXPECT_FALSE(model->selectedSessionId());
  settle();
  EXPECT_THAT(log, IsEmpty());
}

}  // namespace
}  // namespace varnel::model
