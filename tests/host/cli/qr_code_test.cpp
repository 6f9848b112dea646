// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/cli/qr_code.h"

#include <gmock/gmock.h>
#include <png.h>
#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>
#include <sys/stat.h>

#include <cstring>
#include <sstream>

#include "host/cli/listen_address.h"
#include "tests/support/temporary_directory.h"

namespace varnel::cli {
namespace {

using Rows = std::vector<std::vector<bool>>;  ///< true is light

Rows modulesOf(const std::string& drawing) {
  Rows rows;
  std::istringstream lines(drawing);
  for (std::string line; std::getline(lines, line);) {
    auto& upper = rows.emplace_back();
    std::vector<bool> lower;
    for (std::size_t i = 0; i < line.size();) {
      const std::string block = line[i] == ' ' ? " " : line.substr(i, 3);
      i += block.size();
      upper.push_back(block == "█" || block == "▀");
      lower.push_back(block == "█" || block == "▄");
    }
    rows.push_back(std::move(lower));
  }
  return rows;
}

std::string decode(const std::vector<std::uint8_t>& pixels, int width, int height) {
  const ZXing::ImageView image(pixels.data(), width, height, ZXing::ImageFormat::Lum);
  return ZXing::ReadBarcode(image, ZXing::DecodeHints().setFormats(ZXing::BarcodeFormat::QRCode)).text();
}

std::string decode(const Rows& rows) {
  constexpr std::size_t kScale = 4;
  const std::size_t width = rows[0].size() * kScale;
  std::vector<std::uint8_t> pixels;
  for (std::size_t y = 0; y < rows.size() * kScale; ++y) {
    for (std::size_t x = 0; x < width; ++x) pixels.push_back(rows[y / kScale][x / kScale] ? 255 : 0);
  }
  return decode(pixels, static_cast<int>(width), static_cast<int>(rows.size() * kScale));
}

TEST(QrCode, fitsATerminalAndIsReadBack) {
  const std::string payload = R"({"version":1,"baseURL":"http://127.0.0.1:65535","secret":"0123456789abcdefghijkl"})";
  const std::string longest = payload + std::string(106 - payload.size(), ' ');
  for (const auto& text : {payload, longest}) {
    const auto drawing = drawQrCode(text, false).value();
    const auto rows = modulesOf(drawing);
    EXPECT_EQ(rows[0].size(), 41U);
    EXPECT_EQ(std::ranges::count(drawing, '\n'), 21);
    EXPECT_EQ(decode(rows), text);
  }
  EXPECT_EQ(drawQrCode(payload, false)->find('\x1b'), std::string::npos);
  EXPECT_EQ(drawQrCode(payload, true)->substr(0, 8), "\x1b[97;40m");
  EXPECT_FALSE(drawQrCode(std::string(5000, 'x'), false));
}

TEST(QrCode, isWrittenAsAPictureThatOnlyItsUserReads) {
  const varnel::testing::TemporaryDirectory folder;
  const auto file = folder.path() / "code.png";
  std::fclose(std::fopen(file.c_str(), "w"));
  ASSERT_EQ(::chmod(file.c_str(), 0644), 0);
  ASSERT_TRUE(writeQrPicture("a secret", file));
  struct stat status{};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  ASSERT_TRUE(png_image_begin_read_from_file(&image, file.c_str()));
  image.format = PNG_FORMAT_GRAY;
  std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(image));
  ASSERT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr));
  EXPECT_EQ(decode(pixels, static_cast<int>(image.width), static_cast<int>(image.height)), "a secret");
  EXPECT_FALSE(writeQrPicture("x", folder.path() / "missing" / "code.png"));
}

TEST(ListenAddress, isAnAddressInNumbersAndAPort) {
  for (const auto& [text, url] : std::map<std::string, std::string>{{"127.0.0.1:0", "http://127.0.0.1:0"},
                                                                    {"localhost:80", "http://127.0.0.1:80"},
                                                                    {"[::1]:65535", "http://[::1]:65535"}}) {
    ASSERT_TRUE(parseListenAddress(text)) << text;
    EXPECT_EQ(urlOf(*parseListenAddress(text)), url);
  }
  for (const auto* bad :
       {"", ":80", "127.0.0.1", "127.0.0.1:", "127.0.0.1:65536", "127.0.0.1:-1", "host:80", "::1:80"}) {
    EXPECT_FALSE(parseListenAddress(bad)) << bad;
  }
}

}  // namespace
}  // namespace varnel::cli
