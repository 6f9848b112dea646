// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

class Refresh : public ModelTest {
 protected:
  void SetUp() override { makePaired(); }
};

TEST_F(Refresh, AsksForTheThreeListsAtOnceAndStoresThemInOrder) {
  for (const auto* target : {kSessions, kProjects, kModels}) bridge.expect("GET", target, Script::silence());
  const auto refreshing = model->refresh(false);
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 3; }));
  log.clear();
  // Answered from the last to the first, stored from the first to the last.
  bridge.answer("GET", kModels, Script::json(200, answers::models("m")));
  bridge.answer("GET", kProjects, Script::json(200, answers::projects("/p")));
  settle();
  EXPECT_THAT(log, IsEmpty());
  bridge.answer("GET", kSessions, Script::json(200, answers::sessions({answers::summary("s")})));
  ASSERT_TRUE(waitFor("lastContact"));
  EXPECT_THAT(log, ElementsAre("sessions", "projects", "models", "connected", "lastContact"));
  EXPECT_EQ(model->models().at(0).id, "m");
  EXPECT_EQ(model->lastContact(), 1000.0);
}

TEST_F(Refresh, StoresAListAsSoonAsItIsThere) {
  bridge.expect("GET", kProjects, Script::silence());
  expectGet(kSessions, answers::sessions({answers::summary("s")}));
  expectGet(kModels, answers::models("m"));
  const auto refreshing = model->refresh(false);
  EXPECT_TRUE(waitFor("sessions"));
  EXPECT_FALSE(model->isConnected());
}

TEST_F(Refresh, AFailureKeepsWhatCameBeforeAndCancelsTheRest) {
  expectGet(kSessions, answers::sessions({answers::summary("s")}));
  bridge.expect("GET", kProjects, Script::json(500, R"({"error":"no"})"));
  bridge.always("GET", kModels, Script::silence());
  const auto refreshing = model->refresh(false);
  EXPECT_TRUE(spinUntil([&] { return refreshing.isReady(); })) << "the third answer is not waited for";
  EXPECT_EQ(model->sessions().size(), 1U);
  EXPECT_FALSE(model->isConnected());
  EXPECT_FALSE(model->lastContact());
  EXPECT_FALSE(model->hasErrorMessage());
}

TEST_F(Refresh, NothingAfterAFailedListIsStoredThoughItCameFirst) {
  bridge.expect("GET", kSessions, Script::silence());
  expectGet(kProjects, answers::projects("/p"));
  expectGet(kModels, answers::models("m"));
  const auto refreshing = model->refresh(false);
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 3; }));
  settle();
  bridge.answer("GET", kSessions, Script::json(200, R"({"sessions":[{}]})"));
  ASSERT_TRUE(spinUntil([&] { return refreshing.isReady(); }));
  EXPECT_EQ(log, requests()) << "no change";
}

TEST_F(Refresh, AFailureDoesNotDisconnect) {
  expectLists();
  await(model->refresh(false));
  ASSERT_TRUE(model->isConnected());
  for (const auto* target : {kSessions, kProjects, kModels}) bridge.always("GET", target, Script::json(500, "{}"));
  await(model->refresh(false));
  EXPECT_TRUE(model->isConnected());
}

TEST_F(Refresh, DoesNotWaitForTheRateLimit) {
  expectLists();
  bridge.expect("GET", kUsage, Script::silence());
  await(model->refresh(true));
  EXPECT_TRUE(model->isConnected());
  ASSERT_TRUE(waitFor("GET /v1/usage"));
  bridge.answer("GET", kUsage, Script::json(200, answers::usage(30)));
  ASSERT_TRUE(waitFor("rateLimit"));
  EXPECT_EQ(model->rateLimit()->usedPercent, 30);
  EXPECT_TRUE(model->usage().has_value());
}

TEST_F(Refresh, TheRateLimitFallsBackAndKeepsTheReport) {
  expectGet(kUsage, answers::usage(30));
  await(model->refreshRateLimit());
  bridge.expect("GET", kUsage, Script::json(404, "{}"));
  expectGet(kRateLimit, R"({"rateLimit":{"usedPercent":40}})");
  await(model->refreshRateLimit());
  EXPECT_EQ(model->rateLimit()->usedPercent, 40);
  EXPECT_EQ(model->usage()->primary->usedPercent, 30);

  for (const auto* target : {kUsage, kRateLimit}) bridge.expect("GET", target, Script::json(500, "{}"));
  await(model->refreshRateLimit());
  EXPECT_EQ(model->rateLimit()->usedPercent, 40);

  bridge.expect("GET", kUsage, Script::json(404, "{}"));
  expectGet(kRateLimit, "{}");
  await(model->refreshRateLimit());
  EXPECT_FALSE(model->rateLimit().has_value());
  EXPECT_FALSE(model->hasErrorMessage());
}

TEST_F(Refresh, ARefusedTokenIsPublishedUntilAnAnswerIsGood) {
  for (const auto* target : {kSessions, kProjects, kModels}) {
    bridge.always("GET", target, Script::json(401, R"({"error":"revoked"})"));
  }
  await(model->refresh(false));
  EXPECT_TRUE(model->isTokenRefused());
  EXPECT_FALSE(model->hasErrorMessage());
  bridge.expect("GET", kDetail, Script::json(500, "{}"));
  await(model->loadSession("s"));
  EXPECT_TRUE(model->isTokenRefused());
  expectGet(kDetail, answers::detail({}));
  await(model->loadSession("s"));
  EXPECT_FALSE(model->isTokenRefused());
}

}  // namespace
}  // namespace varnel::model
