// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/composer_state.h"

#include "tests/app/screens/session/session_fixture.h"

namespace varnel::screens {
namespace {

using testing::HasSubstr;

class Composer : public SessionTest {
 protected:
  [[nodiscard]] std::vector<std::string> attached() { return column(composer().attachments(), "name"); }
  void attach(const std::string& name) {
    bridge.expect("POST", kUploads,
                  Script::json(200, R"({"id":")" + name + R"(","kind":"image","name":")" + name +
                                        R"(","mimeType":"image/png","size":2048})"));
    const auto before = attached().size();
    composer().attachFiles({QUrl(QStringLiteral("file:///x.png"))});
    ASSERT_TRUE(spinUntil([&] { return attached().size() == before + 1; }));
    settle();
  }
  void openActive(const std::string& more = "") { open(session(true), detail(hello(), session(true), more)); }
};

TEST_F(Composer, AMessageGoesOutWithTheDefaultModelAndShowsAtOnce) {
  open();
  EXPECT_FALSE(composer().isSendEnabled()) << "nothing is written yet";
  composer().setMessage(QStringLiteral(" \n "));
  EXPECT_FALSE(composer().isSendEnabled()) << "white space is nothing";
  composer().setPreedit(QStringLiteral("あ"));
  EXPECT_TRUE(composer().isSendEnabled()) << "what is being composed counts";
  composer().setPreedit({});
  composer().setMessage(QStringLiteral("  do it\n"));
  EXPECT_TRUE(composer().isSendEnabled());
  EXPECT_EQ(composer().sendLabel(), QStringLiteral("Send message"));

  bridge.expect("POST", model::kMessages, Script::silence());
  composer().sendOrStop();
  EXPECT_EQ(composer().message(), QString());
  EXPECT_TRUE(composer().isBusy());
  EXPECT_THAT(texts(), ElementsAre("hello", "do it"));
  composer().setMessage(QStringLiteral("next"));
  composer().sendOrStop();
  EXPECT_FALSE(composer().isSendEnabled()) << "one at a time";
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", model::kMessages) == 1; }));
  EXPECT_THAT(lastBody(), HasSubstr(R"("text":"do it")"));
  EXPECT_THAT(lastBody(), HasSubstr(R"("model":"m")"));
}

TEST_F(Composer, WhatFailsComesBackInFrontOfWhatWasWrittenSince) {
  open();
  attach("one");
  bridge.expect("POST", model::kMessages, Script::silence());
  composer().setMessage(QStringLiteral("first "));
  composer().sendOrStop();
  EXPECT_TRUE(attached().empty());
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", model::kMessages) == 1; }));
  composer().setMessage(QStringLiteral("second"));
  composer().saveDraft();
  EXPECT_EQ(drafts.draft("s").text, "first\nsecond") << "a kill now loses nothing";
  bridge.answer("POST", model::kMessages, Script::json(500, R"({"error":"no"})"));
  ASSERT_TRUE(spinUntil([this] { return !composer().isBusy(); }));
  EXPECT_EQ(composer().message(), QStringLiteral("first\nsecond"));
  EXPECT_THAT(attached(), ElementsAre("one"));
  EXPECT_THAT(texts(), ElementsAre("hello"));
  EXPECT_EQ(model->errorText(), QStringLiteral("no"));
}

TEST_F(Composer, AttachmentsAloneGoWithAFixedTextThatNeverComesBack) {
  open();
  attach("one");
  bridge.expect("POST", model::kMessages, Script::json(500, "{}"));
  composer().sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return !composer().isBusy(); }));
  EXPECT_THAT(lastBody(), HasSubstr(R"("text":"Please inspect the attached files.")"));
  EXPECT_THAT(lastBody(), HasSubstr(R"("id":"one")"));
  EXPECT_EQ(composer().message(), QString());

  state->settings()->chooseMode(QStringLiteral("goal"));
  bridge.expect("POST", model::kGoal, Script::json(500, "{}"));
  composer().sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return !composer().isBusy(); }));
  EXPECT_THAT(lastBody(), HasSubstr("Inspect the attached files and complete this goal."));
  EXPECT_TRUE(state->settings()->isGoalMode()) << "it was not sent";
  bridge.expect("POST", model::kGoal, Script::json(200, "{}"));
  composer().sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return !composer().isBusy(); }));
  EXPECT_FALSE(state->settings()->isGoalMode());
  EXPECT_TRUE(attached().empty());
}

TEST_F(Composer, WhileATaskRunsTheButtonStopsItAndNeverSends) {
  openActive();
  composer().setMessage(QStringLiteral("typed"));
  EXPECT_EQ(composer().sendLabel(), QStringLiteral("Stop current task"));
  composer().send();
  bridge.expect("POST", kInterrupt, Script::silence());
  composer().sendOrStop();
  composer().sendOrStop();
  EXPECT_FALSE(composer().isSendEnabled());
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", kInterrupt) == 1; }));
  serve(session(false), detail(hello(), session(false)));
  bridge.answer("POST", kInterrupt, Script::json(200, "{}"));
  ASSERT_TRUE(spinUntil([this] { return composer().sendLabel() == QStringLiteral("Send message"); }));
  EXPECT_EQ(composer().message(), QStringLiteral("typed"));
  EXPECT_FALSE(composer().isBusy());
  composer().stop();
  settle();
  EXPECT_EQ(bridge.count("POST", kInterrupt), 1) << "there is nothing to stop";
}

TEST_F(Composer, AFailedStopIsReportedUnlessThePairingIsGone) {
  openActive();
  bridge.expect("POST", kInterrupt, Script::json(500, R"({"error":"cannot"})"));
  composer().sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return model->hasErrorMessage(); }));
  EXPECT_EQ(model->errorText(), QStringLiteral("cannot"));
  ASSERT_TRUE(spinUntil([this] { return composer().isSendEnabled(); })) << "it can be tried again";
  model->clearErrorMessage();
  bridge.expect("POST", kInterrupt, Script::silence());
  composer().sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", kInterrupt) == 2; }));
  model->unpair();
  bridge.answer("POST", kInterrupt, Script::json(500, R"({"error":"cannot"})"));
  ASSERT_TRUE(spinUntil([this] { return !composer().isBusy(); }));
  settle();
  EXPECT_FALSE(model->hasErrorMessage());
}

TEST_F(Composer, UploadsGoOnInOrderPastWhatCannotBeReadOrIsRefused) {
  open();
  composer().setMessage(QStringLiteral("x"));
  bridge.expect("POST", kUploads, Script::json(413, R"({"error":"too large"})"));
  bridge.expect("POST", kUploads,
                Script::json(200, R"({"id":"2","kind":"video","name":"Video.mov","mimeType":"v","size":1})"));
  composer().attachFiles({QUrl(QStringLiteral("file:///bad")), QUrl(QStringLiteral("file:///a.png")),
                          QUrl(QStringLiteral("file:///b.mov"))});
  EXPECT_TRUE(composer().isUploading());
  EXPECT_FALSE(composer().isSendEnabled());
  ASSERT_TRUE(spinUntil([this] { return !composer().isUploading(); }));
  EXPECT_EQ(model->errorText(), QStringLiteral("too large"));
  EXPECT_THAT(attached(), ElementsAre("Video.mov"));
  EXPECT_THAT(column(composer().attachments(), "symbol"), ElementsAre("film"));
  EXPECT_EQ(bridge.requests().back().header("X-File-Name"), "Video.mov");
  EXPECT_EQ(bridge.requests().back().header("Content-Type"), "video/quicktime");
  composer().removeAttachment(QStringLiteral("2"));
  EXPECT_TRUE(attached().empty());
}

TEST_F(Composer, APickHoldsTenAndAPasteWhatTheClipboardHas) {
  open();
  bridge.always("POST", kUploads,
                Script::json(200, R"({"id":"i","kind":"image","name":"Image.png","mimeType":"i","size":1})"));
  composer().attachFiles(QList<QUrl>(12, QUrl(QStringLiteral("file:///a.png"))));
  ASSERT_TRUE(spinUntil([this] { return attached().size() == 10 && !composer().isUploading(); }));
  EXPECT_FALSE(composer().paste()) << "text is the field's";
  clipboard.image = QImage(1, 1, QImage::Format_RGB32);
  EXPECT_TRUE(composer().paste());
  EXPECT_TRUE(spinUntil([this] { return attached().size() == 11; }));
}

TEST_F(Composer, ADraftOutlivesTheConversationAndTheProgram) {
  open();
  attach("one");
  composer().setMessage(QStringLiteral("half a"));
  state->settings()->chooseMode(QStringLiteral("goal"));
  ASSERT_TRUE(spinUntil([this] { return drafts.draft("s").text == "half a"; })) << "soon after typing";
  composer().setMessage(QStringLiteral("half a sentence"));
  state.reset();
  device::DraftStore again(*defaults);
  EXPECT_EQ(again.draft("s").text, "half a sentence");
  make();
  EXPECT_EQ(composer().message(), QString());
  ASSERT_TRUE(spinUntil([this] { return !composer().message().isEmpty(); }));
  EXPECT_EQ(composer().message(), QStringLiteral("half a sentence"));
  EXPECT_THAT(attached(), ElementsAre("one"));
  EXPECT_TRUE(state->settings()->isGoalMode());
  composer().removeAttachment(QStringLiteral("one"));
  composer().setMessage({});
  composer().saveDraft();
  EXPECT_EQ(device::DraftStore(*defaults).draft("s"), device::Draft());
}

TEST_F(Composer, AMessageWaitsForTheEndOfTheTurnAndCanBeTakenBack) {
  const std::string queued = R"({"id":"q","createdAt":1,"text":"later","attachments":[]})";
  openActive(R"(,"queued":[])");
  EXPECT_FALSE(composer().canQueue()) << "nothing is written";
  composer().setMessage(QStringLiteral("later"));
  EXPECT_TRUE(composer().canQueue());
  serve(session(true), detail(hello(), session(true), R"(,"queued":[)" + queued + "]"));
  bridge.expect("POST", kQueue, Script::json(200, queued));
  composer().sendWhenDone();
  EXPECT_EQ(composer().message(), QString());
  ASSERT_TRUE(spinUntil([this] { return composer().queue()->rowCount() == 1; }));
  EXPECT_THAT(column(composer().queue(), "text"), ElementsAre("later"));

  composer().setMessage(QStringLiteral("new"));
  serve(session(true), detail(hello(), session(true), R"(,"queued":[])"));
  bridge.expect("DELETE", std::string(kQueue) + "?id=q", Script::json(200, R"({"queued":[)" + queued + "]}"));
  composer().editQueued(QStringLiteral("q"));
  ASSERT_TRUE(spinUntil([this] { return composer().queue()->rowCount() == 0; }));
  EXPECT_EQ(composer().message(), QStringLiteral("later\nnew"));
}

TEST_F(Composer, ABridgeWithoutAQueueOffersNone) {
  openActive();
  composer().setMessage(QStringLiteral("later"));
  EXPECT_FALSE(composer().canQueue());
}

TEST_F(Composer, DictatedTextIsJoinedWithOneBlank) {
  open();
  composer().append(QStringLiteral("one"));
  composer().append(QStringLiteral("two"));
  composer().setMessage(composer().message() + QLatin1Char('\n'));
  composer().append(QStringLiteral("three"));
  EXPECT_EQ(composer().message(), QStringLiteral("one two\nthree"));
  state->useAgain(QStringLiteral("zero"));
  EXPECT_EQ(composer().message(), QStringLiteral("zero\none two\nthree"));
}

TEST_F(Composer, ClosingWhileSomethingIsUnderWayIsHarmless) {
  open();
  bridge.expect("POST", model::kMessages, Script::silence());
  composer().setMessage(QStringLiteral("x"));
  composer().sendOrStop();
  ASSERT_TRUE(spinUntil([this] { return bridge.count("POST", model::kMessages) == 1; }));
  state.reset();
  bridge.answer("POST", model::kMessages, Script::json(500, R"({"error":"no"})"));
  ASSERT_TRUE(spinUntil([this] { return model->hasErrorMessage(); }));
  EXPECT_EQ(drafts.draft("s").text, "x") << "what the bridge did not take is still a draft";
}

}  // namespace
}  // namespace varnel::screens
