// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/picked_media.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QMimeData>

#include "tests/support/temporary_directory.h"

namespace varnel::platform {
namespace {

QByteArray picture(const char* format) {
  QImage image(8, 8, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray content;
  QBuffer buffer(&content);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format);
  return content;
}

/// The first bytes of a film as cameras write it.
QByteArray film(const char* brand) {
  return QByteArray(
             "\0\0\0\x18"
             "ftyp",
             8) +
         brand + QByteArray(512, '\0');
}

struct Case {
  const char* name;
  QByteArray content;
  const char* fileName;  ///< of the upload; null when the file is passed over
  const char* mimeType;
};

class ReadMedia : public ::testing::TestWithParam<Case> {};

TEST_P(ReadMedia, GoesByTheContentAndNotByTheName) {
  const auto& [name, content, fileName, mimeType] = GetParam();
  const testing::TemporaryDirectory directory;
  const QString path = QString::fromStdString((directory.path() / "holiday.txt").string());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(content);
  file.close();

  const auto media = readMedia(path);
  ASSERT_EQ(media.has_value(), fileName != nullptr);
  if (!media) return;
  EXPECT_EQ(media->fileName().toStdString(), fileName);
  EXPECT_EQ(media->type.mimeType.toStdString(), mimeType);
  EXPECT_EQ(media->data, content);
}

INSTANTIATE_TEST_SUITE_P(Cases, ReadMedia,
                         ::testing::Values(Case{"Png", picture("PNG"), "Image.png", "image/png"},
                                           Case{"Jpeg", picture("JPEG"), "Image.jpg", "image/jpeg"},
                                           Case{"Mp4", film("isom"), "Video.mp4", "video/mp4"},
                                           Case{"QuickTime", film("qt  "), "Video.mov", "video/quicktime"},
                                           Case{"Text", "just words", nullptr, nullptr},
                                           Case{"Empty", "", nullptr, nullptr}),
                         [](const auto& each) { return each.param.name; });

TEST(PickedMedia, WhatCannotBeReadIsPassedOver) {
  const testing::TemporaryDirectory directory;
  EXPECT_FALSE(readMedia(QString::fromStdString(directory.path().string())).has_value());
  EXPECT_FALSE(readMedia(QString::fromStdString((directory.path() / "absent.png").string())).has_value());
  EXPECT_FALSE(encodeImage(QImage()).has_value());
}

TEST(PickedMedia, ATypeWithoutAnExtensionIsNamedLikeAFilm) {
  EXPECT_EQ((PickedMedia{.type = {.mimeType = QStringLiteral("image/x-odd")}}.fileName()), QStringLiteral("Image.mov"));
}

TEST(PickedMedia, TakesFilesFromADropAndThePictureOnlyWhenThereAreNone) {
  QImage image(3, 2, QImage::Format_RGB32);
  image.fill(Qt::blue);
  QMimeData pasted;
  pasted.setImageData(image);
  EXPECT_EQ(mediaIn(pasted).image.size(), QSize(3, 2));
  const auto media = encodeImage(mediaIn(pasted).image);
  ASSERT_TRUE(media.has_value());
  EXPECT_EQ(media->fileName(), QStringLiteral("Image.png"));
  EXPECT_EQ(QImage::fromData(media->data), image);

  pasted.setUrls(
      {QUrl(QStringLiteral("https://example.org/a.png")), QUrl::fromLocalFile(QStringLiteral("/tmp/a.png"))});
  EXPECT_EQ(mediaIn(pasted).files, QList{QUrl::fromLocalFile(QStringLiteral("/tmp/a.png"))});
  EXPECT_TRUE(mediaIn(pasted).image.isNull());

  QMimeData text;
  text.setText(QStringLiteral("words"));
  EXPECT_TRUE(mediaIn(text).isEmpty());
}

}  // namespace
}  // namespace varnel::platform
