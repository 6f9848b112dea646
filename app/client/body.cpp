// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/body.h"

#include <zlib.h>

#include <algorithm>

namespace varnel::client {
namespace {

/// Unpacks gzip, of one member or several.
class Inflater {
 public:
  Inflater() { inflateInit2(&m_stream, kGzipWindow); }
  ~Inflater() { inflateEnd(&m_stream); }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  /// Appends what these bytes become, at most `limit` in all. False when they are not gzip.
  bool put(std::string& packed, std::string& out, std::size_t limit) {
    m_stream.next_in = reinterpret_cast<Bytef*>(packed.data());
    m_stream.avail_in = static_cast<uInt>(packed.size());
    while (m_stream.avail_in > 0 && out.size() < limit) {
      if (m_ended && inflateReset(&m_stream) != Z_OK) return false;
      const std::size_t before = out.size();
      const std::size_t room = std::min(kStep, limit - before);
      out.resize(before + room);
      m_stream.next_out = reinterpret_cast<Bytef*>(out.data() + before);
      m_stream.avail_out = static_cast<uInt>(room);
      const int result = inflate(&m_stream, Z_NO_FLUSH);
      out.resize(before + room - m_stream.avail_out);
      m_ended = result == Z_STREAM_END;
      if (result != Z_OK && !m_ended) return false;
    }
    return true;
  }
  [[nodiscard]] bool hasEnded() const { return m_ended; }

 private:
  static constexpr int kGzipWindow = 15 + 16;
  static constexpr std::size_t kStep = std::size_t{1} << 20;

  z_stream m_stream{};
  bool m_ended = false;
};

}  // namespace

std::expected<std::string, Body::Failure> Body::text() && {
  if (isPacked()) return unpack();
  std::string text;
  text.reserve(static_cast<std::size_t>(m_size));
  for (std::string& piece : m_pieces) {
    text.append(piece);
    piece = {};
  }
  m_pieces.clear();
  return text;
}

std::expected<std::string, Body::Failure> Body::unpack() {
  Inflater inflater;
  std::string text;
  // One byte more than may be tells that there is more.
  const auto limit = static_cast<std::size_t>(m_unpackedLimit) + 1;
  for (std::string& piece : m_pieces) {
    if (!inflater.put(piece, text, limit)) return std::unexpected(Failure::NotGzip);
    if (text.size() == limit) return std::unexpected(Failure::TooLarge);
    piece = {};
  }
  if (!inflater.hasEnded()) return std::unexpected(Failure::NotGzip);
  return text;
}

}  // namespace varnel::client
