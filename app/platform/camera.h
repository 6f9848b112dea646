// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class QVideoSink;

namespace varnel::platform {

/// The device's default camera, looking for QR codes. Main thread; off with its destruction.
class Camera : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// False while the device has none.
  [[nodiscard]] virtual bool isAvailable() const = 0;
  /// Shows what it sees in `preview`, when there is one, which must outlive the capture. Does nothing without a camera.
  virtual void start(QVideoSink* preview) = 0;
  virtual void stop() = 0;

 signals:
  void availableChanged();
  /// The text of a code in view; the same one again while it stays there.
  void codeSeen(const QString& text);
};

}  // namespace varnel::platform
