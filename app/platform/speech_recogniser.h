// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QObject>
#include <QString>
#include <memory>
#include <string>

#include "app/platform/microphone.h"

namespace varnel::platform {

/// The recognition of one dictation under way. Ends with exactly one of its two signals, never from inside a call;
/// destroying it ends it without one.
class RecognitionTask : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  virtual void append(const QByteArray& frames) = 0;
  /// No more frames come; the final text is on its way.
  virtual void endAudio() = 0;

 signals:
  void finished(const QString& text);
  void failed();
};

/// Turns speech into text on this device. Main thread.
class SpeechRecogniser {
 public:
  virtual ~SpeechRecogniser() = default;

  virtual QCoro::Task<bool> requestAuthorisation() = 0;
  /// Whether speech of that locale ("en-CA") can be recognised now.
  virtual QCoro::Task<bool> isAvailable(std::string locale) = 0;
  /// Never null; what cannot be started fails soon after.
  virtual std::unique_ptr<RecognitionTask> start(const std::string& locale, AudioFormat format) = 0;
};

}  // namespace varnel::platform
