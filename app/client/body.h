// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::client {

/// The bytes of an answer in pieces. Growing one buffer, or joining the pieces of a large answer, would hold the main
/// thread for milliseconds, so they are joined where they are decoded.
class Body {
 public:
  void append(std::string_view bytes) {
    if (m_pieces.empty() || m_pieces.back().size() + bytes.size() > kPiece) m_pieces.emplace_back();
    m_pieces.back().append(bytes);
    m_size += static_cast<std::int64_t>(bytes.size());
  }
  [[nodiscard]] std::int64_t size() const { return m_size; }

  /// Gives the pieces up one by one, so that the bytes hardly ever stand here twice.
  std::string join() && {
    std::string text;
    text.reserve(static_cast<std::size_t>(m_size));
    for (std::string& piece : m_pieces) {
      text.append(piece);
      piece = {};
    }
    m_pieces.clear();
    return text;
  }

 private:
  static constexpr std::size_t kPiece = std::size_t{256} << 10;

  std::vector<std::string> m_pieces;
  std::int64_t m_size = 0;
};

}  // namespace varnel::client
