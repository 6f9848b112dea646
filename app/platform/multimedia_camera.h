// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtMultimedia/QMediaCaptureSession>
#include <QtMultimedia/QMediaDevices>
#include <memory>

#include "app/platform/camera.h"
#include "app/platform/code_scanner.h"

class QCamera;

namespace varnel::platform {

/// The camera that Qt Multimedia finds.
class MultimediaCamera : public Camera {
  Q_OBJECT

 public:
  explicit MultimediaCamera(QObject* parent = nullptr);
  ~MultimediaCamera() override;

  [[nodiscard]] bool isAvailable() const override;
  void start(QVideoSink* preview) override;
  void stop() override;

 private:
  QMediaDevices m_devices;
  CodeScanner m_scanner;
  QVideoSink m_ownSink;  ///< where nobody looks
  QMediaCaptureSession m_session;
  std::unique_ptr<QCamera> m_camera;
};

}  // namespace varnel::platform
