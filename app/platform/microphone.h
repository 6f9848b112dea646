// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QObject>
#include <expected>

namespace varnel::platform {

/// One channel of signed 16-bit samples, little-endian.
struct AudioFormat {
  int sampleRate = 16000;
  bool operator==(const AudioFormat&) const = default;
};

/// The device's microphone. Main thread; closed with its destruction.
class Microphone : public QObject {
  Q_OBJECT

 public:
  static constexpr int kFramesInBuffer = 1024;

  using QObject::QObject;

  /// Whether the user lets the application listen.
  virtual QCoro::Task<bool> requestPermission() = 0;
  /// Begins to deliver buffers, all in the format it returns. Fails, with nothing left open, when there is none to be
  /// had.
  virtual std::expected<AudioFormat, QString> start() = 0;
  /// What was captured before is delivered first, the last buffer being shorter.
  virtual void stop() = 0;
  [[nodiscard]] virtual bool isRunning() const = 0;

 signals:
  /// `kFramesInBuffer` frames.
  void captured(const QByteArray& frames);
};

}  // namespace varnel::platform
