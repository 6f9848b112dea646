// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAudioFormat>
#include <QByteArray>

namespace varnel::platform {

/// Turns what a sound device delivers, in pieces of any size, into one channel of 16-bit samples in buffers of so many
/// frames.
class FrameBuffer {
 public:
  /// `format` is the device's.
  FrameBuffer(const QAudioFormat& format, int framesInBuffer);

  void append(const QByteArray& bytes);
  /// The next whole buffer, empty while there is none.
  QByteArray take();
  /// What is left at the end.
  QByteArray takeRest();

 private:
  QAudioFormat m_format;
  qsizetype m_bufferSize;
  QByteArray m_raw;      ///< an incomplete frame
  QByteArray m_samples;  ///< converted, not yet taken
};

}  // namespace varnel::platform
