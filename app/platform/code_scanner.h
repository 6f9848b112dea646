// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtMultimedia/QVideoSink>
#include <optional>

class QVideoFrame;

namespace varnel::platform {

/// The text of the first QR code in the picture; other kinds of codes do not count. Takes some ten milliseconds for a
/// camera's picture: call it on a worker.
std::optional<QString> readQrCode(const QImage& image);
std::optional<QString> readQrCode(QVideoFrame frame);

/// Looks for QR codes in what a sink is given, on a worker, one frame at a time: frames that come meanwhile are passed
/// over. Main thread.
class CodeScanner : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// Looks at this sink from now on, or at none.
  void watch(QVideoSink* sink);

 signals:
  void codeSeen(const QString& text);
  /// A frame was looked at and no code is in it.
  void nothingSeen();

 private:
  void lookAt(const QVideoFrame& frame);

  QPointer<QVideoSink> m_sink;
  bool m_looking = false;
};

}  // namespace varnel::platform
