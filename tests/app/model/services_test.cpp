// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

/// What the model hands to the live activity, the reminders and the notifications.
class Services : public ModelTest {
 protected:
  static std::string request(const std::string& id, bool resolved) {
    return R"({"id":")" + id + R"(","method":"m","sessionId":"s","createdAt":1,"params":{},"availableDecisions":[],)" +
           R"("resolved":)" + (resolved ? "true" : "false") + "}";
  }
};

TEST_F(Services, TheActivityIsTakenUpOnceAndHearsOfEachEventFirst) {
  makeConnected();
  EXPECT_EQ(restored, 1);
  bridge.always("GET", kDetail, Script::json(200, answers::detail({})));
  expectGet(kUsage, answers::usage(10));
  bridge.inject(answers::event(1, "usage.updated", "s"));
  ASSERT_TRUE(waitFor("pendingRequests s"));
  EXPECT_THAT(log, ElementsAre("apply usage.updated", "GET /v1/usage", "schedule 10", "GET /v1/sessions/s",
                               "transcript s", "pendingRequests s"));
  log.clear();
  expectFullRefresh();
  bridge.inject(answers::event(2, "snapshot.required", "s"));
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 4; }));
  EXPECT_FALSE(seen("apply snapshot.required"));
}

TEST_F(Services, AnEventWaitsForTheActivityToBeDone) {
  makeConnected();
  client::Gate gate;
  applying = &gate;
  expectGet(kDetail, answers::detail({}));
  bridge.inject(answers::event(1, "x", "s"));
  bridge.inject(answers::event(2, "y"));
  ASSERT_TRUE(waitFor("apply x"));
  settle();
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_EQ(model->lastSequence(), 1);
  applying = nullptr;
  gate.open();
  EXPECT_TRUE(waitFor("apply y"));
  EXPECT_THAT(requests(), ElementsAre("GET /v1/sessions/s"));
}

TEST_F(Services, TheModelMayGoWhileTheActivityIsAtWork) {
  makeConnected();
  client::Gate gate;
  applying = &gate;
  bridge.inject(answers::event(1, "activity.updated", "s"));
  ASSERT_TRUE(waitFor("apply activity.updated"));
  model.reset();
  gate.open();
  settle();
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(Services, RemindersFollowTheWindowsOfEveryAnswer) {
  makePaired();
  const auto report = [](const std::string& windows) {
    return "{" + windows + R"("summary":{},"dailyUsageBuckets":[],"fetchedAt":1})";
  };
  expectGet(kUsage,
            report(R"("rateLimit":{"usedPercent":1},"secondary":{"usedPercent":3},"primary":{"usedPercent":2},)"));
  await(model->refreshRateLimit());
  EXPECT_THAT(log, ElementsAre("GET /v1/usage", "usage", "rateLimit", "schedule 2 3"));
  log.clear();
  expectGet(kUsage, report(R"("rateLimit":{"usedPercent":1},)"));
  await(model->refreshRateLimit());
  EXPECT_EQ(log.back(), "schedule") << "with none, those of before are withdrawn";

  bridge.expect("GET", kUsage, Script::json(500, "{}"));
  expectGet(kRateLimit, R"({"rateLimit":{"usedPercent":4}})");
  await(model->refreshRateLimit());
  EXPECT_EQ(log.back(), "schedule 4");
  bridge.expect("GET", kUsage, Script::json(500, "{}"));
  expectGet(kRateLimit, "{}");
  await(model->refreshRateLimit());
  EXPECT_EQ(log.back(), "schedule");
  log.clear();
  for (const auto* target : {kUsage, kRateLimit}) bridge.expect("GET", target, Script::json(500, "{}"));
  await(model->refreshRateLimit());
  EXPECT_EQ(log, requests()) << "two failures change nothing";
}

TEST_F(Services, NotificationsHearOfTheStateAfterEachRefreshAndLoad) {
  makePaired();
  expectGet(kDetail, answers::detail({}, R"(,"session":)" + answers::summary("s")));
  await(model->loadSession("s"));
  EXPECT_THAT(announced, IsEmpty()) << "one conversation is not the list";
  expectLists("s");
  await(model->refresh(false));
  ASSERT_EQ(announced.size(), 1U);
  EXPECT_EQ(announced.back().sessions, model->sessions());
  EXPECT_THAT(announced.back().openRequests.at("s"), IsEmpty());

  bridge.expect("GET", kDetail,
                Script::json(200, R"({"items":[],"pendingRequests":[)" + request("open", false) + "," +
                                      request("done", true) + "]}"));
  await(model->loadSession("s"));
  EXPECT_THAT(announced.back().openRequests.at("s"), ElementsAre("open"));
  EXPECT_FALSE(announced.back().inView);
  model->selectSession("s");
  EXPECT_EQ(announced.back().inView, "s");

  const auto before = announced.size();
  for (const auto* target : {kSessions, kProjects, kModels, kUsage, kRateLimit}) {
    bridge.always("GET", target, Script::json(500, "{}"));
  }
  await(model->refresh(false));
  EXPECT_EQ(announced.size(), before) << "a failure tells nothing";
  bridge.always("GET", streamTarget(0), Script::silence());
  inForeground = false;
  model->start();
  EXPECT_FALSE(announced.back().inView) << "each start looks anew";
  model->unpair();
  announced.clear();
  model->selectSession(std::nullopt);
  EXPECT_THAT(announced, IsEmpty());
}

}  // namespace
}  // namespace varnel::model
