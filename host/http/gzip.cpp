// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace varnel::http {

namespace {

/// Fast rather than small: transcripts shrink to a fifth all the same.
constexpr int kLevel = 1;
constexpr int kGzipWindow = 15 + 16;

std::string_view trimmed(std::string_view text) {
  const auto begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

bool isRefused(std::string_view parameters) {
  const auto quality = parameters.find("q=");
  if (quality == std::string_view::npos) return false;
  return parameters.substr(quality + 2).find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

bool acceptsGzip(std::string_view acceptEncoding) {
  while (!acceptEncoding.empty()) {
    const auto comma = acceptEncoding.find(',');
    const std::string_view entry = acceptEncoding.substr(0, comma);
    const auto semicolon = entry.find(';');
    const bool isOurs = trimmed(entry.substr(0, semicolon)) == "gzip";
    if (isOurs) return semicolon == std::string_view::npos || !isRefused(entry.substr(semicolon));
    if (comma == std::string_view::npos) break;
    acceptEncoding.remove_prefix(comma + 1);
  }
  return false;
}

std::optional<std::string> gzip(std::string_view text) {
  z_stream stream{};
  if (text.size() > std::numeric_limits<uInt>::max() / 2) return std::nullopt;
  if (deflateInit2(&stream, kLevel, Z_DEFLATED, kGzipWindow, 8, Z_DEFAULT_STRATEGY) != Z_OK) return std::nullopt;
  std::string packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
  // zlib's interface predates const; it only reads.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  const int result = deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  if (result != Z_STREAM_END) return std::nullopt;
  return packed;
}

}  // namespace varnel::http
