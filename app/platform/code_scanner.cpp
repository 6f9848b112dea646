// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/code_scanner.h"

#include <ZXing/ReadBarcode.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QThreadPool>
#include <QtMultimedia/QVideoFrame>
#include <utility>

namespace varnel::platform {
namespace {

std::optional<QString> read(const ZXing::ImageView& view) {
  const auto hints = ZXing::DecodeHints().setFormats(ZXing::BarcodeFormat::QRCode).setTryHarder(true);
  const auto result = ZXing::ReadBarcode(view, hints);
  if (!result.isValid()) return std::nullopt;
  return QString::fromStdString(result.text());
}

/// Formats whose first plane is the picture's brightness.
bool beginsWithBrightness(QVideoFrameFormat::PixelFormat format) {
  switch (format) {
    case QVideoFrameFormat::Format_NV12:
    case QVideoFrameFormat::Format_NV21:
    case QVideoFrameFormat::Format_YUV420P:
    case QVideoFrameFormat::Format_YUV422P:
    case QVideoFrameFormat::Format_YV12:
    case QVideoFrameFormat::Format_IMC1:
    case QVideoFrameFormat::Format_IMC2:
    case QVideoFrameFormat::Format_IMC3:
    case QVideoFrameFormat::Format_IMC4:
    case QVideoFrameFormat::Format_Y8:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::optional<QString> readQrCode(const QImage& image) {
  const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
  if (grey.isNull()) return std::nullopt;
  return read(
      {grey.constBits(), grey.width(), grey.height(), ZXing::ImageFormat::Lum, static_cast<int>(grey.bytesPerLine())});
}

std::optional<QString> readQrCode(QVideoFrame frame) {
  if (!beginsWithBrightness(frame.pixelFormat())) return readQrCode(frame.toImage());
  if (!frame.map(QVideoFrame::ReadOnly)) return std::nullopt;
  auto text = read({frame.bits(0), frame.width(), frame.height(), ZXing::ImageFormat::Lum, frame.bytesPerLine(0)});
  frame.unmap();
  return text;
}

void CodeScanner::watch(QVideoSink* sink) {
  if (m_sink) disconnect(m_sink, nullptr, this, nullptr);
  m_sink = sink;
  if (m_sink) connect(m_sink, &QVideoSink::videoFrameChanged, this, &CodeScanner::lookAt);
}

void CodeScanner::lookAt(const QVideoFrame& frame) {
  if (m_looking || !frame.isValid()) return;
  m_looking = true;
  QThreadPool::globalInstance()->start([self = QPointer(this), frame] {
    auto text = readQrCode(frame);
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [self, found = std::move(text)] {
          if (!self) return;
          self->m_looking = false;
          // Asked to look at nothing meanwhile: what was found comes too late.
          if (!self->m_sink) return;
          if (found) {
            emit self->codeSeen(*found);
          } else {
            emit self->nothingSeen();
          }
        },
        Qt::QueuedConnection);
  });
}

}  // namespace varnel::platform
