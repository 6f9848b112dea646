// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>
#include <iostream>
#include <vector>

#include "app/platform/speech_recogniser_process.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/waiting.h"

// The helper as the application runs it, with the recogniser that is installed on this machine.

namespace varnel::platform {
namespace {

using support::spinUntil;

QString helper() {
  return qEnvironmentVariable("VARNEL_DICTATE");
}

/// What one program says on a machine where nothing is installed for dictation.
int exitCodeWithNothingInstalled(const QStringList& arguments) {
  const testing::TemporaryDirectory empty;
  QProcess process;
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("VARNEL_SPEECH_DIR"), QString::fromStdString(empty.path().string()));
  process.setProcessEnvironment(environment);
  process.start(helper(), arguments);
  process.closeWriteChannel();
  if (!spinUntil([&] { return process.state() == QProcess::NotRunning; })) return -1;
  return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

TEST(Dictate, SaysWhenNothingIsInstalledAndWhatItIsCalledWith) {
  const QString english = QStringLiteral("en-CA");
  EXPECT_EQ(exitCodeWithNothingInstalled({QStringLiteral("--probe"), english}), 3);
  EXPECT_EQ(exitCodeWithNothingInstalled({english, QStringLiteral("16000")}), 3);
  for (const QStringList& wrong :
       {QStringList{}, QStringList{QStringLiteral("--odd"), english}, QStringList{english, QStringLiteral("fast")}}) {
    EXPECT_EQ(exitCodeWithNothingInstalled(wrong), 2);
  }
}

/// The sentence as flite speaks it: samples of 16 kHz. Empty when there is no flite.
QByteArray spoken(const QString& sentence) {
  const testing::TemporaryDirectory directory;
  const QString path = QString::fromStdString((directory.path() / "speech.wav").string());
  QProcess flite;
  flite.start(QStringLiteral("flite"), {QStringLiteral("-voice"), QStringLiteral("slt"), QStringLiteral("-t"), sentence,
                                        QStringLiteral("-o"), path});
  spinUntil([&] { return flite.state() == QProcess::NotRunning; });
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray wave = file.readAll();
  const qsizetype data = wave.indexOf("data");
  return data < 0 ? QByteArray() : wave.mid(data + 8);
}

QStringList wordsOf(const QString& text) {
  static const QRegularExpression kNoWord(QStringLiteral("[^a-z']+"));
  return text.toLower().split(kNoWord, Qt::SkipEmptyParts);
}

/// How many words must be put in, taken out or changed.
qsizetype wordErrors(const QStringList& said, const QStringList& heard) {
  std::vector<qsizetype> row(static_cast<std::size_t>(heard.size() + 1));
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = static_cast<qsizetype>(j);
  for (qsizetype i = 1; i <= said.size(); ++i) {
    qsizetype diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j < row.size(); ++j) {
      const bool isSame = said[i - 1] == heard[static_cast<qsizetype>(j) - 1];
      const qsizetype cost = std::min({diagonal + (isSame ? 0 : 1), row[j] + 1, row[j - 1] + 1});
      diagonal = std::exchange(row[j], cost);
    }
  }
  return row.back();
}

/// Speaks in buffers, as the microphone does, and waits for the text.
QString recognised(ProcessSpeechRecogniser& recogniser, const QByteArray& samples) {
  QString text = QStringLiteral("(nothing)");
  bool isEnded = false;
  const auto task = recogniser.start("en-CA", {.sampleRate = 16000});
  QObject::connect(task.get(), &RecognitionTask::finished, [&](const QString& heard) {
    text = heard.trimmed();
    isEnded = true;
  });
  QObject::connect(task.get(), &RecognitionTask::failed, [&] { isEnded = true; });
  constexpr qsizetype kBuffer = qsizetype{2} * Microphone::kFramesInBuffer;
  for (qsizetype at = 0; at < samples.size(); at += kBuffer) task->append(samples.mid(at, kBuffer));
  task->endAudio();
  spinUntil([&] { return isEnded; }, std::chrono::seconds(60));
  return text;
}

TEST(SpokenSentence, IsUnderstoodByTheInstalledRecogniser) {
  ProcessSpeechRecogniser recogniser(helper());
  if (!support::await(recogniser.isAvailable("en-CA"))) {
    GTEST_SKIP() << "NOT TESTED: no recogniser is installed (scripts/install-speech)";
  }
  if (QStandardPaths::findExecutable(QStringLiteral("flite")).isEmpty()) {
    GTEST_SKIP() << "NOT TESTED: there is no flite to speak";
  }
  qsizetype words = 0;
  qsizetype errors = 0;
  for (const QString& sentence : {QStringLiteral("Please run the tests and fix the failing one."),
                                  QStringLiteral("Rename the function and update every call to it."),
                                  QStringLiteral("Revert the last change and explain what went wrong."),
                                  QStringLiteral("Open the log file and find the first error message."),
                                  QStringLiteral("Add a new button to the settings page.")}) {
    const QByteArray silence(48000, '\0');  // one does not speak at once
    const QString heard = recognised(recogniser, silence + spoken(sentence) + silence);
    std::cout << "said:  " << sentence.toStdString() << "\nheard: " << heard.toStdString() << '\n';
    words += wordsOf(sentence).size();
    errors += wordErrors(wordsOf(sentence), wordsOf(heard));
  }
  std::cout << "word error: " << 100 * errors / words << " % of " << words << " words\n";
  EXPECT_LE(5 * errors, words) << "a fifth of the words at most";
  EXPECT_EQ(recognised(recogniser, QByteArray(32000, '\0')), QString()) << "silence";
}

}  // namespace
}  // namespace varnel::platform
