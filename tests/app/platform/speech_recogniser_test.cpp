// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QAudioDevice>
#include <QMediaDevices>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "app/platform/frame_buffer.h"
#include "app/platform/microphone_multimedia.h"
#include "app/platform/speech_recogniser_process.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/waiting.h"

namespace varnel::platform {
namespace {

using namespace std::chrono_literals;
using support::await;
using support::spinUntil;

/// A helper program made of a few lines of shell.
class ProcessRecogniserTest : public ::testing::Test {
 protected:
  void helperIs(const std::string& script) {
    const auto path = directory.path() / "helper";
    std::ofstream(path) << "#!/bin/sh\n" << script << "\n";
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    helper = QString::fromStdString(path.string());
  }
  void begin(std::chrono::milliseconds patience = ProcessSpeechRecogniser::kPatience) {
    task = ProcessSpeechRecogniser(helper, patience).start("en-CA", {.sampleRate = 48000});
    QObject::connect(task.get(), &RecognitionTask::finished, [this](const QString& text) { heard << text; });
    QObject::connect(task.get(), &RecognitionTask::failed, [this] { heard << QStringLiteral("failed"); });
  }
  /// Waits for the end, and sees that there is one only.
  bool ends(const QString& how) {
    const bool ended = spinUntil([&] { return !heard.isEmpty(); });
    support::spinFor(30ms);
    return ended && heard == QStringList{how};
  }

  testing::TemporaryDirectory directory;
  QString helper;
  std::unique_ptr<RecognitionTask> task;
  QStringList heard;
};

TEST_F(ProcessRecogniserTest, HandsOverTheAudioAndTakesTheText) {
  helperIs(R"(printf '%s %s ' "$1" "$2"; wc -c; echo noise >&2)");
  begin();
  const QByteArray frames(2048, 'x');
  task->append(frames);
  spinUntil([&] { return false; }, 50ms);
  for (int i = 0; i < 199; ++i) task->append(frames);
  task->endAudio();
  EXPECT_TRUE(ends(QStringLiteral("en-CA 48000 409600\n"))) << heard.join(',').toStdString();
}

TEST_F(ProcessRecogniserTest, EndsAtOnceWithoutAudio) {
  helperIs("cat");
  begin();
  task->endAudio();
  EXPECT_TRUE(ends(QString()));
}

TEST_F(ProcessRecogniserTest, FailsWithTheHelper) {
  for (const char* script : {"exit 3", "kill -9 $$", "exec 0<&-; sleep 0.05; exit 1"}) {
    heard.clear();
    helperIs(script);
    begin();
    for (int i = 0; i < 100; ++i) task->append(QByteArray(2048, 'x'));
    EXPECT_TRUE(ends(QStringLiteral("failed"))) << script;
  }
  helperIs("");
  helper += QStringLiteral(".absent");
  heard.clear();
  begin();
  task->append("x");
  task->endAudio();
  EXPECT_TRUE(ends(QStringLiteral("failed")));
}

TEST_F(ProcessRecogniserTest, LosesPatienceOnlyAfterTheAudioHasEnded) {
  helperIs("cat >/dev/null; exec sleep 60");
  begin(50ms);
  task->append("x");
  support::spinFor(200ms);
  EXPECT_TRUE(heard.isEmpty());
  task->endAudio();
  EXPECT_TRUE(ends(QStringLiteral("failed")));
}

TEST_F(ProcessRecogniserTest, TakesTheHelperWithIt) {
  const auto pidFile = directory.path() / "pid";
  helperIs("echo $$ > '" + pidFile.string() + ".new'; mv '" + pidFile.string() + ".new' '" + pidFile.string() +
           "'; exec sleep 60");
  begin();
  ASSERT_TRUE(spinUntil([&] { return std::filesystem::exists(pidFile); }));
  int pid = 0;
  std::ifstream(pidFile) >> pid;
  task.reset();
  EXPECT_TRUE(spinUntil([&] { return !std::filesystem::exists("/proc/" + std::to_string(pid)); }));
  EXPECT_TRUE(heard.isEmpty());
}

TEST_F(ProcessRecogniserTest, IsAvailableWhenTheHelperSaysSo) {
  helperIs(R"(test "$1 $2" = '--probe fr-CA')");
  ProcessSpeechRecogniser recogniser(helper);
  EXPECT_TRUE(await(recogniser.isAvailable("fr-CA")));
  EXPECT_FALSE(await(recogniser.isAvailable("en-CA")));
  EXPECT_TRUE(await(recogniser.requestAuthorisation()));
  EXPECT_FALSE(await(ProcessSpeechRecogniser(helper + QStringLiteral(".absent")).isAvailable("en-CA")));
  helperIs("kill -9 $$");
  EXPECT_FALSE(await(ProcessSpeechRecogniser(helper).isAvailable("en-CA")));
}

QAudioFormat audioFormat(QAudioFormat::SampleFormat samples, int channels) {
  QAudioFormat format;
  format.setSampleRate(48000);
  format.setSampleFormat(samples);
  format.setChannelCount(channels);
  return format;
}

std::vector<int> samplesIn(const QByteArray& bytes) {
  std::vector<int> samples;
  for (qsizetype at = 0; at + 2 <= bytes.size(); at += 2) {
    std::int16_t sample = 0;
    std::memcpy(&sample, bytes.constData() + at, sizeof sample);
    samples.push_back(sample);
  }
  return samples;
}

TEST(FrameBuffer, MixesToOneChannelInBuffersOfTheSameSize) {
  const std::array<float, 8> stereo{0.5F, -0.5F, 1, 1, 2, 2, -1, 0};
  const QByteArray bytes(reinterpret_cast<const char*>(stereo.data()), sizeof stereo);
  FrameBuffer buffer(audioFormat(QAudioFormat::Float, 2), 3);
  std::vector<int> heard;
  for (const char byte : bytes) {  // as badly cut as can be
    buffer.append(QByteArray(1, byte));
    for (QByteArray part = buffer.take(); !part.isEmpty(); part = buffer.take()) {
      EXPECT_EQ(part.size(), 6);
      heard = samplesIn(part);
    }
  }
  EXPECT_EQ(heard, (std::vector{0, 32767, 32767}));
  EXPECT_EQ(samplesIn(buffer.takeRest()), std::vector{-16384});
  EXPECT_TRUE(buffer.takeRest().isEmpty());
}

TEST(FrameBuffer, LeavesSixteenBitSamplesNearlyAsTheyAre) {
  const std::array<std::int16_t, 4> mono{0, 32767, -32767, 1000};
  FrameBuffer buffer(audioFormat(QAudioFormat::Int16, 1), 4);
  buffer.append(QByteArray(reinterpret_cast<const char*>(mono.data()), sizeof mono));
  const auto heard = samplesIn(buffer.take());
  ASSERT_EQ(heard.size(), mono.size());
  for (std::size_t i = 0; i < mono.size(); ++i) EXPECT_NEAR(heard[i], mono[i], 1);
}

TEST(Microphone, FailsWithoutADevice) {
  if (!QMediaDevices::defaultAudioInput().isNull()) GTEST_SKIP() << "this machine has a microphone";
  MultimediaMicrophone microphone;
  EXPECT_TRUE(await(microphone.requestPermission()));
  EXPECT_FALSE(microphone.start().has_value());
  EXPECT_FALSE(microphone.isRunning());
  microphone.stop();
}

}  // namespace
}  // namespace varnel::platform
