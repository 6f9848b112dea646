// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/picked_media.h"

#include <QBuffer>
#include <QFile>
#include <QMimeData>
#include <QMimeDatabase>

namespace varnel::platform {
namespace {

/// The database's first, which for QuickTime is one that no camera uses.
QString preferredExtension(const QMimeType& type) {
  const QString common = QStringLiteral("mov");
  return type.suffixes().contains(common) ? common : type.preferredSuffix();
}

std::optional<MediaType> mediaType(const QMimeType& found) {
  const bool isVideo = found.name().startsWith(QLatin1String("video/"));
  if (!isVideo && !found.name().startsWith(QLatin1String("image/"))) return std::nullopt;
  return MediaType{.mimeType = found.name(), .extension = preferredExtension(found), .isVideo = isVideo};
}

}  // namespace

QString PickedMedia::fileName() const {
  const QString extension = type.extension.isEmpty() ? QStringLiteral("mov") : type.extension;
  return (type.isVideo ? QStringLiteral("Video.") : QStringLiteral("Image.")) + extension;
}

std::optional<PickedMedia> readMedia(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  QByteArray content = file.readAll();
  if (file.error() != QFileDevice::NoError) return std::nullopt;
  auto type = mediaType(QMimeDatabase().mimeTypeForData(content));
  if (!type) return std::nullopt;
  return PickedMedia{.type = *std::move(type), .data = std::move(content)};
}

std::optional<PickedMedia> encodeImage(const QImage& image) {
  QByteArray content;
  QBuffer buffer(&content);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "PNG")) return std::nullopt;
  return PickedMedia{.type = {.mimeType = QStringLiteral("image/png"), .extension = QStringLiteral("png")},
                     .data = std::move(content)};
}

MediaOffer mediaIn(const QMimeData& data) {
  MediaOffer offer;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) offer.files.append(url);
  }
  if (offer.files.isEmpty() && data.hasImage()) offer.image = qvariant_cast<QImage>(data.imageData());
  return offer;
}

}  // namespace varnel::platform
