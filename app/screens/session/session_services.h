// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtGui/QImage>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "app/platform/picked_media.h"

namespace varnel::device {
class DraftStore;
class SpeechTranscriber;
}  // namespace varnel::device

namespace varnel::screens {

/// An image or a video that is to be attached, unread.
struct MediaSource {
  QString path;
  QImage image;  ///< when there is no path
};

/// What an open conversation needs beside the model, as plain functions: a test hands in its own.
struct SessionServices {
  std::function<void(const QString&)> copyText;
  /// Shows an address in the browser.
  std::function<void(const QUrl&)> openUrl;
  /// Goes on evenly, whatever happens to the time of day.
  std::function<std::chrono::milliseconds()> now;
  /// What the clipboard holds beside text.
  std::function<platform::MediaOffer()> clipboardMedia;
  /// Called on a worker. Nothing for what cannot be read.
  std::function<std::optional<platform::PickedMedia>(const MediaSource&)> readMedia;
  /// A dictation engine of the conversation's own; null where there is none.
  std::function<std::unique_ptr<device::SpeechTranscriber>()> makeSpeech;
  /// Where unsent text outlives the program; may be null. Outlives every conversation.
  device::DraftStore* drafts = nullptr;
};

/// The clipboard, the browser and the clock of the system; no drafts.
SessionServices systemServices();

}  // namespace varnel::screens
