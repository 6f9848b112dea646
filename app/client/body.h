// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::client {

/// The bytes of an answer in pieces. Growing one buffer, or joining the pieces of a large answer, would hold the main
/// thread for milliseconds, so they are joined where they are decoded.
class Body {
 public:
  enum class Failure {
    NotGzip,   ///< it said so and is not, or breaks off
    TooLarge,  ///< once unpacked
  };

  void append(std::string_view bytes) {
    if (m_pieces.empty() || m_pieces.back().size() + bytes.size() > kPiece) m_pieces.emplace_back();
    m_pieces.back().append(bytes);
    m_size += static_cast<std::int64_t>(bytes.size());
  }
  /// The bytes are packed, and may not become more than `limit` when they are unpacked.
  void setGzip(std::int64_t limit) { m_unpackedLimit = limit; }

  /// How much work its text will be, in bytes: what packed JSON becomes is an estimate.
  [[nodiscard]] std::int64_t size() const { return isPacked() ? m_size * kUsualRatio : m_size; }
  /// Gives the pieces up one by one, so that the bytes hardly ever stand here twice.
  std::expected<std::string, Failure> text() &&;

 private:
  static constexpr std::size_t kPiece = std::size_t{256} << 10;
  static constexpr std::int64_t kUsualRatio = 8;

  [[nodiscard]] bool isPacked() const { return m_unpackedLimit >= 0; }
  std::expected<std::string, Failure> unpack();

  std::vector<std::string> m_pieces;
  std::int64_t m_size = 0;
  std::int64_t m_unpackedLimit = -1;
};

}  // namespace varnel::client
