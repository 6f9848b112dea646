// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <memory>
#include <optional>

#include "app/platform/frame_buffer.h"
#include "app/platform/microphone.h"

class QAudioSource;
class QIODevice;

namespace varnel::platform {

/// The default input of the sound system, in 16 kHz where it offers that. No permission is to be had here: a system
/// that keeps its microphone from an application shows it none.
class MultimediaMicrophone : public Microphone {
  Q_OBJECT

 public:
  explicit MultimediaMicrophone(QObject* parent = nullptr);
  ~MultimediaMicrophone() override;

  QCoro::Task<bool> requestPermission() override;
  std::expected<AudioFormat, QString> start() override;
  void stop() override;
  [[nodiscard]] bool isRunning() const override { return m_source != nullptr; }

 private:
  void deliver();

  std::unique_ptr<QAudioSource> m_source;
  QPointer<QIODevice> m_input;
  std::optional<FrameBuffer> m_buffer;
};

}  // namespace varnel::platform
