// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/multimedia_camera.h"

#include <QtMultimedia/QCamera>
#include <QtMultimedia/QCameraDevice>

namespace varnel::platform {

MultimediaCamera::MultimediaCamera(QObject* parent) : Camera(parent) {
  connect(&m_devices, &QMediaDevices::videoInputsChanged, this, &Camera::availableChanged);
  connect(&m_scanner, &CodeScanner::codeSeen, this, &Camera::codeSeen);
}

MultimediaCamera::~MultimediaCamera() {
  stop();
}

bool MultimediaCamera::isAvailable() const {
  return !QMediaDevices::defaultVideoInput().isNull();
}

void MultimediaCamera::start(QVideoSink* preview) {
  if (!isAvailable() || m_camera) return;
  QVideoSink* sink = preview ? preview : &m_ownSink;
  m_camera = std::make_unique<QCamera>(QMediaDevices::defaultVideoInput());
  m_session.setCamera(m_camera.get());
  m_session.setVideoSink(sink);
  m_scanner.watch(sink);
  m_camera->start();
}

void MultimediaCamera::stop() {
  m_scanner.watch(nullptr);
  if (m_camera) m_camera->stop();
  m_session.setCamera(nullptr);
  m_session.setVideoSink(nullptr);
  m_camera.reset();
}

}  // namespace varnel::platform
