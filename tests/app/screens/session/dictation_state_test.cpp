// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/dictation_state.h"

#include "app/device/speech_transcriber.h"
#include "tests/app/screens/session/session_fixture.h"
#include "tests/support/fake_speech.h"

namespace varnel::screens {
namespace {

class Dictation : public SessionTest {
 protected:
  void listen() {
    open();
    auto speech = std::make_unique<device::SpeechTranscriber>(
        device::SpeechTranscriber::Device{.microphone = microphone, .recogniser = recogniser, .defaults = defaults});
    dictation = std::make_unique<DictationState>(std::move(speech), *model, composer(), nullptr);
  }
  void TearDown() override {
    dictation.reset();
    SessionTest::TearDown();
  }

  std::shared_ptr<support::FakeMicrophone> microphone = std::make_shared<support::FakeMicrophone>();
  std::shared_ptr<support::FakeSpeechRecogniser> recogniser = std::make_shared<support::FakeSpeechRecogniser>();
  std::unique_ptr<DictationState> dictation;
};

TEST_F(Dictation, WhatWasSaidGoesBehindWhatIsWrittenAndIsNotSent) {
  listen();
  composer().setMessage(QStringLiteral("written"));
  EXPECT_EQ(dictation->label(), QStringLiteral("Dictate message"));
  dictation->toggle();
  ASSERT_TRUE(spinUntil([this] { return dictation->isRecording(); }));
  EXPECT_EQ(dictation->label(), QStringLiteral("Stop recording"));
  EXPECT_EQ(dictation->symbol(), QStringLiteral("stop.fill"));
  microphone->speak(QByteArray(2048, 'x'));
  dictation->toggle();
  ASSERT_TRUE(dictation->isTranscribing());
  emit recogniser->task->finished(QStringLiteral("  said\n"));
  EXPECT_EQ(composer().message(), QStringLiteral("written said"));
  EXPECT_FALSE(composer().isBusy());
}

TEST_F(Dictation, AFailureIsShownAndTheRecordingOfferedAgain) {
  listen();
  dictation->toggle();
  ASSERT_TRUE(spinUntil([this] { return dictation->isRecording(); }));
  microphone->speak(QByteArray(2048, 'x'));
  dictation->toggle();
  emit recogniser->task->failed();
  EXPECT_EQ(model->errorText(), QStringLiteral("No speech was recognized."));
  EXPECT_TRUE(dictation->canTranscribeAgain());
}

TEST_F(Dictation, TheLanguageIsChosenByItsOwnName) {
  listen();
  dictation->chooseLanguage(1);
  const auto french = dictation->languages().at(1).toMap();
  EXPECT_EQ(french.value(QStringLiteral("label")).toString(), QStringLiteral("Français"));
  EXPECT_EQ(french.value(QStringLiteral("symbol")).toString(), QStringLiteral("checkmark"));
  EXPECT_EQ(dictation->languages().at(0).toMap().value(QStringLiteral("symbol")).toString(), QStringLiteral("globe"));
}

TEST_F(Dictation, WithoutAnEngineItSaysSo) {
  open();
  state->dictation()->toggle();
  EXPECT_EQ(model->errorText(), QStringLiteral("Speech recognition is unavailable."));
}

}  // namespace
}  // namespace varnel::screens
