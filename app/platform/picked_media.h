// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

class QMimeData;

namespace varnel::platform {

/// What kind of image or video a file holds.
struct MediaType {
  QString mimeType;   ///< the preferred one, such as "image/jpeg"
  QString extension;  ///< the preferred one, without a dot; empty when the type has none
  bool isVideo = false;
  bool operator==(const MediaType&) const = default;
};

/// An image or a video that the user picked, dropped or pasted.
struct PickedMedia {
  MediaType type;
  QByteArray data;

  /// "Image" or "Video" with the type's extension, or ".mov".
  [[nodiscard]] QString fileName() const;
};

/// Reads a whole file, its type told by its content. Nothing when it cannot be read or is neither image nor video.
/// Blocks for as long as the disk takes: call it on a worker.
std::optional<PickedMedia> readMedia(const QString& path);

/// A picture that has no file, as PNG. Takes time for a large one: call it on a worker.
std::optional<PickedMedia> encodeImage(const QImage& image);

/// What a drop or the clipboard holds, unread: local files or, when there are none, one picture.
struct MediaOffer {
  QList<QUrl> files;
  QImage image;
  [[nodiscard]] bool isEmpty() const { return files.isEmpty() && image.isNull(); }
};
MediaOffer mediaIn(const QMimeData& data);

}  // namespace varnel::platform
