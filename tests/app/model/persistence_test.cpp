// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

using platform::Data;
using platform::Dictionary;

constexpr const char* kPreferences = "Varnel.SessionPreferences";
constexpr const char* kReadPositions = "Varnel.ReadPositions";
constexpr const char* kUsageCache = "Varnel.UsageCache";

class Persistence : public ModelTest {
 protected:
  [[nodiscard]] std::string data(const char* key) const { return defaults->get<Data>(key).value_or(Data()).bytes; }
};

TEST_F(Persistence, PreferencesAreSavedAsAnObjectOfConversations) {
  makePaired();
  auto plan = preferencesOf("n");
  plan.mode = wire::CodexCollaborationMode::Plan;
  plan.serviceTier = "fast";
  model->setSessionPreferences("b", plan);
  model->setSessionPreferences("a", preferencesOf("m"));
  EXPECT_EQ(data(kPreferences), R"({"a":{"mode":"default","model":"m","reasoningEffort":"low"},)"
                                R"("b":{"mode":"plan","model":"n","reasoningEffort":"low","serviceTier":"fast"}})");
  EXPECT_THAT(log, ElementsAre("sessionPreferences b", "sessionPreferences a"));
  destroyModel();
  makePaired();
  EXPECT_EQ(model->preferences("b"), plan);
  EXPECT_EQ(model->sessionPreferences().size(), 2U);
}

TEST_F(Persistence, SendingSavesWhatItWasSentWithBeforeTheBridgeAnswers) {
  makePaired();
  bridge.expect("POST", kMessages, Script::json(500, R"({"error":"no"})"));
  auto sending = send("hello");
  EXPECT_EQ(data(kPreferences), R"({"s":{"mode":"default","model":"m","reasoningEffort":"low"}})");
  EXPECT_FALSE(await(std::move(sending)));
  EXPECT_TRUE(model->preferences("s")) << "a failure does not take them back";
}

TEST_F(Persistence, TheTurnThatTheBridgeReportsGoesBeforeTheUsersChoice) {
  makePaired();
  model->setSessionPreferences("s", preferencesOf("mine"));
  auto running = answers::summary("s");
  running.insert(running.size() - 1, R"(,"turnPreferences":{"mode":"plan","model":"theirs","reasoningEffort":"high"})");
  expectGet(kSessions, answers::sessions({running, answers::summary("t")}));
  expectGet(kProjects, answers::projects("/p"));
  expectGet(kModels, answers::models("m"));
  await(model->refresh(false));
  EXPECT_EQ(model->preferences("s")->model, "theirs");
  EXPECT_FALSE(model->preferences("t"));
}

TEST_F(Persistence, ReadPositionsAreADictionaryWrittenOnChangeAlone) {
  makePaired();
  model->markRead("s", std::nullopt);
  EXPECT_FALSE(defaults->value(kReadPositions));
  EXPECT_FALSE(model->lastReadItemID("s"));
  model->markRead("s", "2");
  model->markRead("t", "x");
  model->markRead("s", "1");
  EXPECT_EQ(defaults->get<Dictionary>(kReadPositions), (Dictionary{{"s", "1"}, {"t", "x"}}));
  EXPECT_EQ(model->lastReadItemID("s"), "1") << "it may move back";
  const auto writes = defaults->writes();
  model->markRead("s", "1");
  EXPECT_EQ(defaults->writes(), writes);
}

TEST_F(Persistence, AReadPositionsValueOfAnotherFormCountsAsNone) {
  std::ignore = defaults->set(kReadPositions, Data{R"({"s":"1"})"});
  makePaired();
  EXPECT_FALSE(model->lastReadItemID("s"));
  model->markRead("s", "2");
  EXPECT_EQ(defaults->get<Dictionary>(kReadPositions), (Dictionary{{"s", "2"}}));
}

TEST_F(Persistence, TheLastUsageReportIsThereBeforeTheBridgeIs) {
  makePaired();
  expectGet(kUsage, R"({"rateLimit":{"usedPercent":1},"secondary":{"usedPercent":2},"summary":{},)"
                    R"("dailyUsageBuckets":[{"startDate":"2026-01-02","tokens":5}],"fetchedAt":7,"more":1})");
  await(model->refreshRateLimit());
  const auto usage = model->usage();
  destroyModel();
  log.clear();
  makePaired();
  EXPECT_EQ(model->usage(), usage);
  EXPECT_EQ(model->rateLimit()->usedPercent, 1);
  settle();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(Persistence, WhatDoesNotDecodeIsIgnoredAndStays) {
  std::ignore = defaults->set(kPreferences, Data{R"({"s":{"mode":"dance"}})"});
  std::ignore = defaults->set(kUsageCache, Data{"{}"});
  makePaired();
  EXPECT_THAT(model->sessionPreferences(), IsEmpty());
  EXPECT_FALSE(model->usage() || model->rateLimit() || model->hasErrorMessage());
  EXPECT_EQ(data(kUsageCache), "{}");
}

TEST_F(Persistence, AFallbackLeavesTheReportOfBeforeSaved) {
  makePaired();
  expectGet(kUsage, answers::usage(30));
  await(model->refreshRateLimit());
  const auto saved = data(kUsageCache);
  bridge.expect("GET", kUsage, Script::json(404, "{}"));
  expectGet(kRateLimit, R"({"rateLimit":{"usedPercent":40}})");
  await(model->refreshRateLimit());
  EXPECT_EQ(data(kUsageCache), saved);
}

}  // namespace
}  // namespace varnel::model
