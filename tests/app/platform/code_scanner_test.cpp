// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/code_scanner.h"

#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtMultimedia/QVideoFrame>
#include <QtMultimedia/QVideoFrameFormat>
#include <algorithm>
#include <qrcodegen.hpp>
#include <string>
#include <vector>

#include "tests/support/waiting.h"

namespace varnel::platform {
namespace {

using support::spinUntil;

const std::string kCode = R"({"version":1,"baseURL":"http://127.0.0.1:8787","secret":"0123456789abcdef"})";

QImage drawn(const std::string& text, int module) {
  const auto code = qrcodegen::QrCode::encodeText(text.c_str(), qrcodegen::QrCode::Ecc::MEDIUM);
  constexpr int kQuiet = 4;
  const int modules = code.getSize() + 2 * kQuiet;
  QImage image(modules * module, modules * module, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  for (int y = 0; y < code.getSize(); ++y) {
    for (int x = 0; x < code.getSize(); ++x) {
      if (code.getModule(x, y)) {
        painter.fillRect((x + kQuiet) * module, (y + kQuiet) * module, module, module, Qt::black);
      }
    }
  }
  return image;
}

/// What a camera sees: a grey wall with the code on it, turned by `degrees`.
QImage scene(const std::vector<std::string>& codes, double degrees = 0) {
  QImage image(1280, 720, QImage::Format_RGB32);
  image.fill(QColor(150, 150, 150));
  QPainter painter(&image);
  double x = 1280.0 / static_cast<double>(codes.size() + 1);
  for (const auto& text : codes) {
    const QImage code = drawn(text, 6);
    painter.save();
    painter.translate(x, 360);
    painter.rotate(degrees);
    painter.drawImage(QPointF(-code.width() / 2.0, -code.height() / 2.0), code);
    painter.restore();
    x += 1280.0 / static_cast<double>(codes.size() + 1);
  }
  return image;
}

/// As the camera of a phone gives it: brightness, then colour, which is none. `light` from 0 to 1.
QVideoFrame frameOf(const QImage& image, double light = 1) {
  QVideoFrame frame(QVideoFrameFormat(image.size(), QVideoFrameFormat::Format_NV12));
  EXPECT_TRUE(frame.map(QVideoFrame::WriteOnly));
  const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
  for (int y = 0; y < grey.height(); ++y) {
    uchar* const line = frame.bits(0) + static_cast<qsizetype>(y) * frame.bytesPerLine(0);
    std::transform(grey.constScanLine(y), grey.constScanLine(y) + grey.width(), line,
                   [&](uchar value) { return static_cast<uchar>(12 + value * light * 0.9); });
  }
  constexpr uchar kNoColour = 128;
  std::fill_n(frame.bits(1), frame.mappedBytes(1), kNoColour);
  frame.unmap();
  return frame;
}

class Scanner : public testing::Test {
 protected:
  void SetUp() override {
    QObject::connect(&scanner, &CodeScanner::codeSeen, &scanner,
                     [this](const QString& text) { seen.push_back(text.toStdString()); });
    QObject::connect(&scanner, &CodeScanner::nothingSeen, &scanner, [this] { ++empty; });
    scanner.watch(&sink);
  }
  /// Gives the sink a frame and waits for the verdict.
  void show(const QVideoFrame& frame) {
    const auto before = seen.size() + static_cast<std::size_t>(empty);
    sink.setVideoFrame(frame);
    ASSERT_TRUE(spinUntil([&] { return seen.size() + static_cast<std::size_t>(empty) > before; }));
  }

  QVideoSink sink;
  CodeScanner scanner;
  std::vector<std::string> seen;
  int empty = 0;
};

TEST_F(Scanner, ReadsACodeAsACameraSeesIt) {
  struct Case {
    const char* name;
    QVideoFrame frame;
  };
  const std::vector<Case> cases{
      {"straight", frameOf(scene({kCode}))},
      {"tilted", frameOf(scene({kCode}, 17))},
      {"upside down", frameOf(scene({kCode}, 183))},
      {"dim", frameOf(scene({kCode}), 0.18)},
  };
  for (const auto& each : cases) {
    seen.clear();
    show(each.frame);
    EXPECT_EQ(seen, std::vector{kCode}) << each.name;
  }
}

TEST_F(Scanner, OfTwoCodesInViewOneIsRead) {
  show(frameOf(scene({kCode, "another"})));
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_TRUE(seen.front() == kCode || seen.front() == "another") << seen.front();
}

TEST_F(Scanner, SeesNothingWhereThereIsNoCode) {
  show(frameOf(scene({})));
  EXPECT_EQ(empty, 1);
  EXPECT_TRUE(seen.empty());
}

TEST_F(Scanner, IsSilentOnceItLooksAway) {
  sink.setVideoFrame(frameOf(scene({kCode})));
  scanner.watch(nullptr);
  support::spinFor(std::chrono::milliseconds(200));
  sink.setVideoFrame(frameOf(scene({kCode})));
  support::spinFor(std::chrono::milliseconds(50));
  EXPECT_TRUE(seen.empty());
  EXPECT_EQ(empty, 0);
}

TEST(QrImage, IsReadFromAPictureToo) {
  EXPECT_EQ(readQrCode(drawn("Grüße 漢字", 4)), QStringLiteral("Grüße 漢字"));
  EXPECT_EQ(readQrCode(QImage()), std::nullopt);
}

}  // namespace
}  // namespace varnel::platform
