// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/speech_transcriber.h"

#include <gtest/gtest.h>

#include <QCoroTimer>
#include <QTimer>

#include "tests/support/fake_platform.h"
#include "tests/support/fake_speech.h"
#include "tests/support/waiting.h"

namespace varnel::device {
namespace {

using Language = SpeechTranscriber::Language;

const QString kNoSpeech = QStringLiteral("No speech was recognized.");
const QString kPermission = QStringLiteral("Enable microphone and speech recognition access in Settings.");

class SpeechTranscriberTest : public ::testing::Test {
 protected:
  void make() {
    transcriber = std::make_unique<SpeechTranscriber>(
        SpeechTranscriber::Device{.microphone = microphone, .recogniser = recogniser, .defaults = defaults});
  }
  void record() {
    transcriber->toggle();
    ASSERT_TRUE(transcriber->isRecording());
    microphone->speak("abcd");
  }
  void recordAndStop() {
    record();
    transcriber->toggle();
    ASSERT_TRUE(transcriber->isTranscribing());
  }
  void expectIdle() {
    EXPECT_FALSE(transcriber->isRecording());
    EXPECT_FALSE(transcriber->isTranscribing());
    EXPECT_FALSE(microphone->isRunning());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(recogniser->task.isNull()) << "the task is dropped";
  }

  std::shared_ptr<support::FakeMicrophone> microphone = std::make_shared<support::FakeMicrophone>();
  std::shared_ptr<support::FakeSpeechRecogniser> recogniser = std::make_shared<support::FakeSpeechRecogniser>();
  std::shared_ptr<support::MemoryDefaultsStore> defaults = std::make_shared<support::MemoryDefaultsStore>();
  std::unique_ptr<SpeechTranscriber> transcriber;
  void SetUp() override { make(); }
};

TEST_F(SpeechTranscriberTest, PublishesTheTrimmedTextAfterRecording) {
  record();
  EXPECT_FALSE(transcriber->isTranscribing());
  microphone->speak("efgh");
  transcriber->toggle();
  EXPECT_FALSE(transcriber->isRecording());
  EXPECT_FALSE(microphone->isRunning());
  EXPECT_EQ(recogniser->task->heard, "abcdefgh");
  EXPECT_TRUE(recogniser->task->ended);
  transcriber->toggle();
  EXPECT_TRUE(transcriber->isTranscribing()) << "a third tap is ignored";
  EXPECT_EQ(microphone->starts, 1);

  emit recogniser->task->finished(QStringLiteral("  run the tests\n"));
  EXPECT_EQ(transcriber->completedText(), QStringLiteral("run the tests"));
  EXPECT_TRUE(transcriber->errorMessage().isEmpty());
  EXPECT_FALSE(transcriber->canTranscribeAgain());
  expectIdle();
  transcriber->setCompletedText(QString());
  record();
}

TEST_F(SpeechTranscriberTest, NeedsBothPermissionsAndAsksForSpeechFirst) {
  microphone->permitted = false;
  transcriber->toggle();
  EXPECT_EQ(transcriber->errorMessage(), kPermission);
  microphone->permitted = true;
  recogniser->authorised = false;
  transcriber->setErrorMessage(QString());
  transcriber->toggle();
  EXPECT_EQ(transcriber->errorMessage(), kPermission);
  EXPECT_EQ(microphone->starts, 0);
  expectIdle();
  recogniser->authorised = true;
  record();
  EXPECT_TRUE(transcriber->errorMessage().isEmpty()) << "a new start forgets the last failure";
}

TEST_F(SpeechTranscriberTest, SaysWhatKeepsItFromRecording) {
  recogniser->available = false;
  transcriber->toggle();
  EXPECT_EQ(transcriber->errorMessage(), QStringLiteral("Speech recognition is unavailable."));
  EXPECT_EQ(microphone->starts, 0);
  recogniser->available = true;
  microphone->opens = false;
  transcriber->toggle();
  EXPECT_EQ(transcriber->errorMessage(), QStringLiteral("Could not start recording."));
  expectIdle();
}

TEST_F(SpeechTranscriberTest, IsSilentAboutAFailureWhileRecordingAndNotAfterwards) {
  record();
  emit recogniser->task->failed();
  EXPECT_TRUE(transcriber->errorMessage().isEmpty());
  expectIdle();
  recordAndStop();
  emit recogniser->task->failed();
  EXPECT_EQ(transcriber->errorMessage(), kNoSpeech);
  expectIdle();
}

TEST_F(SpeechTranscriberTest, TakesBlanksForNoSpeech) {
  recordAndStop();
  emit recogniser->task->finished(QStringLiteral(" \n"));
  EXPECT_EQ(transcriber->errorMessage(), kNoSpeech);
  EXPECT_TRUE(transcriber->completedText().isEmpty());
  expectIdle();
  record();
  emit recogniser->task->finished(QString());
  EXPECT_TRUE(transcriber->errorMessage().isEmpty()) << "nothing is said while recording";
  expectIdle();
}

TEST_F(SpeechTranscriberTest, TakesATextThatComesEarly) {
  record();
  emit recogniser->task->finished(QStringLiteral("early"));
  EXPECT_EQ(transcriber->completedText(), QStringLiteral("early"));
  expectIdle();
}

TEST_F(SpeechTranscriberTest, OffersTheKeptRecordingOnce) {
  transcriber->transcribeAgain();
  EXPECT_FALSE(transcriber->isTranscribing()) << "there is none";
  recordAndStop();
  emit recogniser->task->failed();
  ASSERT_TRUE(transcriber->canTranscribeAgain());
  transcriber->setLanguage(Language::French);
  transcriber->transcribeAgain();
  EXPECT_TRUE(transcriber->isTranscribing());
  EXPECT_FALSE(transcriber->canTranscribeAgain());
  EXPECT_TRUE(transcriber->errorMessage().isEmpty());
  EXPECT_EQ(recogniser->task->heard, "abcd");
  EXPECT_TRUE(recogniser->task->ended);
  EXPECT_EQ(recogniser->locales.back(), "fr-CA");
  emit recogniser->task->failed();
  EXPECT_EQ(transcriber->errorMessage(), kNoSpeech);
  EXPECT_FALSE(transcriber->canTranscribeAgain());

  recordAndStop();
  emit recogniser->task->finished(QString());
  EXPECT_TRUE(transcriber->canTranscribeAgain());
  record();
  EXPECT_FALSE(transcriber->canTranscribeAgain()) << "a new recording takes its place";
}

TEST_F(SpeechTranscriberTest, KeepsTheLanguage) {
  EXPECT_EQ(transcriber->language(), Language::English);
  transcriber->setLanguage(Language::French);
  EXPECT_EQ(defaults->get<std::string>("Varnel.SpeechLanguage"), "fr-CA");
  make();
  EXPECT_EQ(transcriber->language(), Language::French);
  record();
  EXPECT_EQ(recogniser->locales, std::vector<std::string>{"fr-CA"});
  transcriber->setLanguage(Language::English);
  EXPECT_EQ(defaults->get<std::string>("Varnel.SpeechLanguage"), "en-CA");
  for (const platform::DefaultsValue& other :
       {platform::DefaultsValue(std::string("de-DE")), platform::DefaultsValue(true)}) {
    defaults->values.insert_or_assign("Varnel.SpeechLanguage", other);
    make();
    EXPECT_EQ(transcriber->language(), Language::English);
  }
  EXPECT_EQ(SpeechTranscriber::languageNames(), (QStringList{QStringLiteral("English"), QStringLiteral("Français")}));
}

TEST_F(SpeechTranscriberTest, TakesEverythingWithItWhenItGoes) {
  record();
  transcriber.reset();
  EXPECT_FALSE(microphone->isRunning());
  EXPECT_TRUE(recogniser->task.isNull());
  microphone->speak("late");
}

/// A recogniser that answers whether it is available when the test says so.
class SlowRecogniser : public support::FakeSpeechRecogniser {
 public:
  QCoro::Task<bool> isAvailable(std::string) override { return wait(gate); }
  std::shared_ptr<bool> gate = std::make_shared<bool>(false);

 private:
  static QCoro::Task<bool> wait(std::shared_ptr<bool> open) {
    QTimer tick;
    tick.start(1);
    while (!*open) co_await tick;
    co_return true;
  }
};

TEST_F(SpeechTranscriberTest, GivesUpAStartThatASecondTapOrItsEndOvertakes) {
  const auto slow = std::make_shared<SlowRecogniser>();
  recogniser = slow;
  make();
  transcriber->toggle();
  transcriber->toggle();
  *slow->gate = true;
  support::spinFor(std::chrono::milliseconds(20));
  EXPECT_EQ(microphone->starts, 0);
  EXPECT_TRUE(transcriber->errorMessage().isEmpty());

  *slow->gate = false;
  transcriber->toggle();
  transcriber.reset();
  *slow->gate = true;
  support::spinFor(std::chrono::milliseconds(20));
  EXPECT_EQ(microphone->starts, 0);
}

}  // namespace
}  // namespace varnel::device
