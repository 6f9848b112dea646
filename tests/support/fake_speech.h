// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <memory>
#include <string>
#include <vector>

#include "app/platform/microphone.h"
#include "app/platform/speech_recogniser.h"

/// A microphone and a recogniser that do what a test says.
namespace varnel::support {

class FakeMicrophone : public platform::Microphone {
 public:
  bool permitted = true;
  bool opens = true;
  int starts = 0;

  QCoro::Task<bool> requestPermission() override { co_return permitted; }
  std::expected<platform::AudioFormat, QString> start() override {
    ++starts;
    if (!opens) return std::unexpected(QStringLiteral("no microphone"));
    m_running = true;
    return platform::AudioFormat{};
  }
  void stop() override { m_running = false; }
  [[nodiscard]] bool isRunning() const override { return m_running; }

  void speak(const QByteArray& frames) {
    if (m_running) emit captured(frames);
  }

 private:
  bool m_running = false;
};

class FakeRecognitionTask : public platform::RecognitionTask {
 public:
  QByteArray heard;
  bool ended = false;

  void append(const QByteArray& frames) override { heard += frames; }
  void endAudio() override { ended = true; }
};

class FakeSpeechRecogniser : public platform::SpeechRecogniser {
 public:
  bool authorised = true;
  bool available = true;
  std::vector<std::string> locales;  ///< of the tasks begun
  QPointer<FakeRecognitionTask> task;

  QCoro::Task<bool> requestAuthorisation() override { co_return authorised; }
  QCoro::Task<bool> isAvailable(std::string) override { co_return available; }
  std::unique_ptr<platform::RecognitionTask> start(const std::string& locale, platform::AudioFormat) override {
    locales.push_back(locale);
    auto begun = std::make_unique<FakeRecognitionTask>();
    task = begun.get();
    return begun;
  }
};

}  // namespace varnel::support
