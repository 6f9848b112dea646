// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

/// Loading and sending.
class Conversation : public ModelTest {
 protected:
  void SetUp() override { makePaired(); }
};

TEST_F(Conversation, ALoadStoresTranscriptRequestsAndSummary) {
  const auto session = R"(,"session":)" + answers::summary("s", "busy");
  expectGet(kDetail, answers::detail({answers::item("1", "user", "hello")}, session));
  EXPECT_FALSE(model->isLoaded("s"));
  await(model->loadSession("s"));
  EXPECT_TRUE(model->isLoaded("s"));
  EXPECT_THAT(transcriptIds(), ElementsAre("1"));
  ASSERT_NE(model->session("s"), nullptr);
  EXPECT_EQ(model->session("s")->latestCommentary, "busy");
  EXPECT_EQ(model->lastContact(), 1000.0);

  log.clear();
  expectGet(kDetail, answers::detail({answers::item("1", "user", "hello")}, session));
  await(model->loadSession("s"));
  EXPECT_THAT(log, ElementsAre("GET /v1/sessions/s")) << "the same answer is no change";
}

TEST_F(Conversation, OnlyTheLoadBegunLastStoresItsAnswer) {
  for (int i = 0; i < 2; ++i) bridge.expect("GET", kDetail, Script::silence());
  const auto first = model->loadSession("s");
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 1; }));
  const auto second = model->loadSession("s");
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 2; }));
  log.clear();
  clock->now = 2000;
  const auto old = Script::json(200, answers::detail({answers::item("old", "user", "a")}));
  const auto fresh = Script::json(200, answers::detail({answers::item("new", "user", "b")}));
  bridge.answer("GET", kDetail, old);  // the older request of the two
  settle();
  EXPECT_THAT(log, IsEmpty()) << "not even a sign of life";
  bridge.answer("GET", kDetail, fresh);
  ASSERT_TRUE(waitFor("lastContact"));
  EXPECT_THAT(transcriptIds(), ElementsAre("new"));
}

TEST_F(Conversation, AnOlderAnswerThatArrivesLastIsDropped) {
  bridge.expect("GET", kDetail, Script::silence());
  const auto first = model->loadSession("s");
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 1; }));
  expectGet(kDetail, answers::detail({answers::item("new", "user", "b")}));
  await(model->loadSession("s"));
  bridge.answer("GET", kDetail, Script::json(200, answers::detail({answers::item("old", "user", "a")})));
  settle();
  EXPECT_THAT(transcriptIds(), ElementsAre("new"));
}

TEST_F(Conversation, AFailedLoadIsSilentAndChangesNothing) {
  expectGet(kDetail, answers::detail({answers::item("1", "user", "hello")}));
  await(model->loadSession("s"));
  log.clear();
  for (const auto& script : {Script::json(500, R"({"error":"no"})"), Script::json(200, "not json"),
                             Script::json(200, R"({"items":[{}],"pendingRequests":[]})")}) {
    bridge.expect("GET", kDetail, script);
    await(model->loadSession("s"));
  }
  EXPECT_EQ(log, requests());
  EXPECT_THAT(transcriptIds(), ElementsAre("1"));
}

TEST_F(Conversation, ASentMessageShowsAtOnceAndIsReplacedByItsEcho) {
  bridge.expect("POST", kMessages, Script::silence());
  auto sending = send(" \n\thello\u00a0 \r\n");
  EXPECT_THAT(log, ElementsAre("transcript s", "sessionPreferences s")) << "before anything was sent";
  ASSERT_EQ(model->transcript("s").size(), 1U);
  const auto& shown = model->transcript("s")[0];
  EXPECT_THAT(shown.id, testing::MatchesRegex("optimistic-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
  EXPECT_EQ(shown.type, "userMessage");
  EXPECT_EQ(shown.role, "user");
  EXPECT_EQ(shown.text, "hello");
  EXPECT_EQ(shown.timestamp, 1000.0);

  // A load while the message is under way keeps showing it.
  ASSERT_TRUE(waitFor("POST /v1/sessions/s/messages"));
  expectGet(kDetail, answers::detail({answers::item("1", "assistant", "hi")}));
  await(model->loadSession("s"));
  EXPECT_THAT(transcriptIds(), ElementsAre("1", "optimistic"));

  bridge.answer("POST", kMessages, Script::json(200, "{}"));
  EXPECT_TRUE(await(std::move(sending)));
  EXPECT_THAT(transcriptIds(), ElementsAre("1", "optimistic"));
  expectGet(kDetail,
            answers::detail({answers::item("1", "assistant", "hi"), answers::item("2", "user", "hello", 1100)}));
  await(model->loadSession("s"));
  EXPECT_THAT(transcriptIds(), ElementsAre("1", "2"));
  EXPECT_EQ(bridge.requests()[0].body,
            R"({"text":"hello","mode":"default","model":"m","reasoningEffort":"low","serviceTier":"default",)"
            R"("attachments":[]})");
  EXPECT_EQ(model->preferences("s")->model, "m");
}

TEST_F(Conversation, AFailedMessageVanishesAndIsReported) {
  bridge.expect("POST", kMessages, Script::json(409, R"({"error":"The agent is busy."})"));
  EXPECT_FALSE(await(send("hello")));
  EXPECT_THAT(transcriptIds(), IsEmpty());
  EXPECT_EQ(model->errorText(), QStringLiteral("The agent is busy."));
  // Nor does it come back with the next load.
  expectGet(kDetail, answers::detail({}));
  await(model->loadSession("s"));
  EXPECT_THAT(transcriptIds(), IsEmpty());
}

TEST_F(Conversation, OfTwoEqualMessagesTheFailedOneVanishes) {
  bridge.expect("POST", kMessages, Script::silence());
  bridge.expect("POST", kMessages, Script::json(500, R"({"error":"no"})"));
  auto first = send("same");
  ASSERT_TRUE(waitFor("POST /v1/sessions/s/messages"));
  const auto firstId = model->transcript("s").at(0).id;
  EXPECT_FALSE(await(send("same")));
  ASSERT_EQ(model->transcript("s").size(), 1U);
  EXPECT_EQ(model->transcript("s")[0].id, firstId);
}

TEST_F(Conversation, BlankTextSendsAndStoresNothing) {
  EXPECT_FALSE(await(send(" \n\t\u2003\u2028")));
  EXPECT_FALSE(await(send("", true)));
  settle();
  EXPECT_THAT(log, IsEmpty());
  EXPECT_FALSE(model->preferences("s"));
}

TEST_F(Conversation, AGoalIsNotShownButLoadsTheConversation) {
  bridge.expect("POST", kGoal, Script::json(200, "{}"));
  expectGet(kDetail, answers::detail({answers::item("1", "user", "aim")}));
  EXPECT_TRUE(await(send("aim", true)));
  EXPECT_THAT(log, ElementsAre("sessionPreferences s", "POST /v1/sessions/s/goal", "GET /v1/sessions/s", "transcript s",
                               "pendingRequests s", "lastContact"));

  bridge.expect("POST", kGoal, Script::json(500, R"({"error":"no"})"));
  EXPECT_FALSE(await(send("aim", true)));
  EXPECT_EQ(model->errorText(), QStringLiteral("no"));
  EXPECT_THAT(transcriptIds(), ElementsAre("1"));
}

}  // namespace
}  // namespace varnel::model
