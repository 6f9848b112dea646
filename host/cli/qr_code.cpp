// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/cli/qr_code.h"

#include <fcntl.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <qrcodegen/qrcodegen.hpp>
#include <vector>

namespace varnel::cli {

using qrcodegen::QrCode;

namespace {

constexpr int kQuietOnScreen = 2;
constexpr int kQuietInPicture = 4;
constexpr int kPixelsPerModule = 8;
constexpr std::string_view kWhiteOnBlack = "\x1b[97;40m";
constexpr std::string_view kOwnColours = "\x1b[0m";

std::expected<QrCode, std::string> encode(std::string_view text) {
  try {
    return QrCode::encodeText(std::string(text).c_str(), QrCode::Ecc::LOW);
  } catch (const qrcodegen::data_too_long&) {
    return std::unexpected("The pairing code is too long for a QR code.");
  }
}

/// Two rows of modules in one character: which of them are light.
std::string_view halfBlock(bool upper, bool lower) {
  if (upper && lower) return "█";
  if (upper) return "▀";
  return lower ? "▄" : " ";
}

std::vector<unsigned char> pixelsOf(const QrCode& code, int side) {
  std::vector<unsigned char> pixels;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      const bool isDark =
          code.getModule(x / kPixelsPerModule - kQuietInPicture, y / kPixelsPerModule - kQuietInPicture);
      pixels.push_back(isDark ? 0 : 255);
    }
  }
  return pixels;
}

}  // namespace

std::expected<std::string, std::string> drawQrCode(std::string_view text, bool withColours) {
  const auto code = encode(text);
  if (!code) return std::unexpected(code.error());
  const int end = code->getSize() + kQuietOnScreen;
  // Outside the code every module is light; below an odd last row nothing is drawn.
  const auto isLight = [&](int x, int y) { return y < end && !code->getModule(x, y); };
  std::string drawing;
  for (int y = -kQuietOnScreen; y < end; y += 2) {
    if (withColours) drawing += kWhiteOnBlack;
    for (int x = -kQuietOnScreen; x < end; ++x) drawing += halfBlock(isLight(x, y), isLight(x, y + 1));
    if (withColours) drawing += kOwnColours;
    drawing += '\n';
  }
  return drawing;
}

std::expected<void, std::string> writeQrPicture(std::string_view text, const std::filesystem::path& file) {
  const auto code = encode(text);
  if (!code) return std::unexpected(code.error());
  const int side = (code->getSize() + 2 * kQuietInPicture) * kPixelsPerModule;
  const auto pixels = pixelsOf(*code, side);
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  // A file that was there keeps its mode unless told otherwise.
  if (descriptor < 0 || ::fchmod(descriptor, 0600) != 0) {
    const std::string reason = std::strerror(errno);
    if (descriptor >= 0) ::close(descriptor);
    return std::unexpected(file.string() + ": " + reason);
  }
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(::fdopen(descriptor, "wb"), std::fclose);
  if (!stream) {
    const std::string reason = std::strerror(errno);
    ::close(descriptor);
    return std::unexpected(file.string() + ": " + reason);
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(side);
  image.height = static_cast<png_uint_32>(side);
  image.format = PNG_FORMAT_GRAY;
  if (png_image_write_to_stdio(&image, stream.get(), 0, pixels.data(), 0, nullptr) == 0) {
    return std::unexpected(file.string() + ": " + image.message);
  }
  // What waited in the stream's buffer is written now.
  if (std::fclose(stream.release()) != 0) return std::unexpected(file.string() + ": " + std::strerror(errno));
  return {};
}

}  // namespace varnel::cli
