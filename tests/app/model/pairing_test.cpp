// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

constexpr const char* kClaimed = R"({"deviceId":"device","token":"t"})";

class Pairing : public ModelTest {
 protected:
  void scan(const std::string& text) { await(model->pair(QString::fromStdString(text))); }
  [[nodiscard]] std::string goodCode() const { return answers::code(1, bridge.baseURL()); }
};

TEST_F(Pairing, ACodeThatDoesNotFitIsSaidSoWithoutARequest) {
  makeUnpaired();
  for (const auto& [code, text] : std::vector<std::pair<std::string, std::string>>{
           {answers::code(2, bridge.baseURL()), "This pairing code version is not supported."},
           {"https://example.org", ""},
           {R"({"version":"1","baseURL":"http://h","secret":"s"})", ""},
           {R"({"version":1,"baseURL":"not a url","secret":"s"})", ""},
           {R"({"version":1,"baseURL":"http://h"})", ""},
           {answers::code(1, "ftp://127.0.0.1"), "The pairing code names an address that is not http or https."},
           {answers::code(1, "http://me@" + bridge.baseURL().substr(7)),
            "The pairing code names an address with a user name in it."},
           {"", ""},
       }) {
    model->clearErrorMessage();
    scan(code);
    EXPECT_TRUE(model->hasErrorMessage()) << code;
    EXPECT_FALSE(model->errorText().isEmpty()) << code;
    if (!text.empty()) EXPECT_EQ(model->errorText().toStdString(), text);
  }
  settle();
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_FALSE(model->isPaired());
}

TEST_F(Pairing, AClaimedPairingIsStoredPublishedAndStarted) {
  makeUnpaired();
  bridge.expect("POST", kClaim, Script::json(200, kClaimed));
  expectStream(0);
  expectFullRefresh();
  scan(goodCode());
  EXPECT_EQ(model->credentials(), credentials());
  EXPECT_EQ(stored, credentials());
  EXPECT_TRUE(model->isStarted());
  ASSERT_TRUE(spinUntil([this] { return bridge.openStreams() == 1 && model->usage() && !model->models().empty(); }));
  const auto& claim = bridge.requests().at(0);
  EXPECT_EQ(claim.body, R"({"secret":"once","deviceName":"Test phone"})");
  EXPECT_FALSE(claim.header("Authorization"));
  EXPECT_EQ(bridge.requests().at(2).header("Authorization").value_or("Bearer t"), "Bearer t");
  EXPECT_FALSE(model->hasErrorMessage());
}

TEST_F(Pairing, ARejectedClaimChangesNothing) {
  makeUnpaired();
  bridge.expect("POST", kClaim, Script::json(401, R"({"error":"This code is used up."})"));
  scan(goodCode());
  EXPECT_EQ(model->errorText(), QStringLiteral("This code is used up."));
  EXPECT_FALSE(model->isPaired());
  EXPECT_FALSE(stored);
  EXPECT_FALSE(model->isTokenRefused()) << "it was the secret that was refused";
}

TEST_F(Pairing, APairingThatCannotBeStoredIsNotInForce) {
  makeUnpaired();
  saveFailure = QStringLiteral("Keychain error 13");
  bridge.expect("POST", kClaim, Script::json(200, kClaimed));
  scan(goodCode());
  settle();
  EXPECT_EQ(model->errorText(), QStringLiteral("Keychain error 13"));
  EXPECT_FALSE(model->isPaired());
  EXPECT_FALSE(model->isStarted());
  EXPECT_THAT(log, ElementsAre("POST /v1/pair/claim", "error Keychain error 13"));
}

TEST_F(Pairing, UnpairingForgetsWhatBelongsToThePairingAndKeepsTheRest) {
  makeConnected();
  bridge.inject(answers::event(7, "unknown"));
  ASSERT_TRUE(spinUntil([this] { return model->lastSequence() == 7; }));
  bridge.expect("POST", kMessages, Script::json(200, "{}"));
  ASSERT_TRUE(await(send("hello")));
  expectGet("/v1/sessions/t", answers::detail({}));
  await(model->loadSession("t"));
  expectGet(kArchived, answers::archived({"u"}, "archive cursor"));
  await(model->loadArchived(false));
  expectGet("/v1/search?q=q", answers::found({"v"}, "search cursor"));
  await(model->search("q"));
  model->selectSession("s");
  model->selectTranscriptItem("i");
  model->markRead("s", "1");
  model->report(QStringLiteral("Still here"));
  log.clear();
  model->unpair();
  EXPECT_EQ(log.at(0), "disconnected");
  EXPECT_EQ(log.at(1), "credentials");
  EXPECT_THAT(logged(log.size() - 4, 4),
              ElementsAre("reminders removed", "notifications cleared", "forgotten 1", "forgotten 2"));
  EXPECT_FALSE(seen("activity cleared")) << "what is on the lock screen stays";

  EXPECT_FALSE(model->isPaired() || stored || model->isStarted() || model->isConnected());
  EXPECT_THAT(model->sessions(), IsEmpty());
  EXPECT_THAT(model->archivedSessions(), IsEmpty());
  EXPECT_THAT(model->archivedSessionIds(), IsEmpty());
  EXPECT_THAT(model->searchResults(), IsEmpty());
  EXPECT_THAT(model->transcript("s"), IsEmpty());
  EXPECT_FALSE(model->isLoaded("t"));
  EXPECT_THAT(model->sessionPreferences(), IsEmpty());
  EXPECT_FALSE(model->rateLimit() || model->usage());
  EXPECT_FALSE(defaults->value("Varnel.SessionPreferences") || defaults->value("Varnel.UsageCache"));

  EXPECT_THAT(model->projects(), testing::SizeIs(1));
  EXPECT_THAT(model->models(), testing::SizeIs(1));
  EXPECT_TRUE(model->lastContact());
  EXPECT_EQ(model->selectedSessionId(), "s");
  EXPECT_EQ(model->selectedTranscriptItemId(), "i");
  EXPECT_EQ(model->errorText(), QStringLiteral("Still here"));
  EXPECT_EQ(model->archivedNextCursor(), "archive cursor");
  EXPECT_EQ(model->searchNextCursor(), "search cursor");
  EXPECT_EQ(model->currentSearchQuery(), "q");
  EXPECT_EQ(model->lastSequence(), 7);
  EXPECT_EQ(model->lastReadItemID("s"), "1");
  EXPECT_TRUE(spinUntil([this] { return bridge.openStreams() == 0; }));
  settle();
  EXPECT_THAT(clock->sleeps, IsEmpty());
}

TEST_F(Pairing, ASecondPairingResumesAfterTheOldSequenceAndShowsNoOldMessage) {
  makeConnected();
  bridge.inject(answers::event(7, "unknown"));
  ASSERT_TRUE(spinUntil([this] { return model->lastSequence() == 7; }));
  bridge.expect("POST", kMessages, Script::json(200, "{}"));
  ASSERT_TRUE(await(send("hello")));
  model->unpair();
  bridge.expect("POST", kClaim, Script::json(200, kClaimed));
  expectStream(7);
  expectFullRefresh();
  scan(goodCode());
  ASSERT_TRUE(spinUntil([this] { return bridge.openStreams() == 1 && model->usage(); }));
  expectGet(kDetail, answers::detail({}));
  await(model->loadSession("s"));
  EXPECT_THAT(transcriptIds(), IsEmpty());
}

TEST_F(Pairing, AnswersThatWereUnderWayAreNotStoredAfterUnpairing) {
  makePaired();
  for (const auto* target : {kSessions, kProjects, kModels, kUsage, kDetail}) {
    bridge.expect("GET", target, Script::silence());
  }
  const auto refreshing = model->refresh(true);
  const auto loading = model->loadSession("s");
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 5; }));
  log.clear();
  model->unpair();
  settle();
  EXPECT_THAT(log,
              ElementsAre("credentials", "reminders removed", "notifications cleared", "forgotten 1", "forgotten 2"));
}

}  // namespace
}  // namespace varnel::model
