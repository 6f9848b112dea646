// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/session_services.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QDesktopServices>
#include <QtGui/QGuiApplication>

namespace varnel::screens {

SessionServices systemServices() {
  return {
      .copyText = [](const QString& text) { QGuiApplication::clipboard()->setText(text); },
      .openUrl = [](const QUrl& url) { QDesktopServices::openUrl(url); },
      .now =
          [] {
            return std::chrono::duration_cast<std::chrono::milliseconds>(
                std::chrono::steady_clock::now().time_since_epoch());
          },
      .clipboardMedia =
          [] {
            const QMimeData* data = QGuiApplication::clipboard()->mimeData();
            return data != nullptr ? platform::mediaIn(*data) : platform::MediaOffer();
          },
      .readMedia =
          [](const MediaSource& source) {
            return source.path.isEmpty() ? platform::encodeImage(source.image) : platform::readMedia(source.path);
          },
  };
}

}  // namespace varnel::screens
