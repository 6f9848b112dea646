// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>

#include "app/platform/speech_recogniser.h"

namespace varnel::platform {

/// Recognition by a helper program, which owns what it takes (a large library and a model that the user installs) and
/// gives the memory back when it ends. `HELPER --probe LOCALE` tells by its exit code whether it can;
/// `HELPER LOCALE RATE` reads samples from its standard input until that closes and writes the text. A helper that
/// dies, fails or takes far too long has failed to recognise.
class ProcessSpeechRecogniser : public SpeechRecogniser {
 public:
  /// How long a helper may take once the audio has ended.
  static constexpr std::chrono::milliseconds kPatience = std::chrono::minutes(2);

  explicit ProcessSpeechRecogniser(QString helper, std::chrono::milliseconds patience = kPatience);

  QCoro::Task<bool> requestAuthorisation() override;
  QCoro::Task<bool> isAvailable(std::string locale) override;
  std::unique_ptr<RecognitionTask> start(const std::string& locale, AudioFormat format) override;

 private:
  QString m_helper;
  std::chrono::milliseconds m_patience;
};

/// The helper that belongs to this application: beside the program, else among the programs of the system.
QString dictationHelper();

}  // namespace varnel::platform
