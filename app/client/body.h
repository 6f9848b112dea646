// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <cstdint>
#include <string>
#include <vector>

namespace varnel::client {

/// The bytes of an answer in the pieces they came in. Growing one buffer, or joining the pieces of a large answer,
/// would hold the main thread for milliseconds, so they are joined where they are decoded.
class Body {
 public:
  void append(QByteArray piece) {
    m_size += piece.size();
    m_pieces.push_back(std::move(piece));
  }
  [[nodiscard]] std::int64_t size() const { return m_size; }

  /// Gives the pieces up one by one, so that the bytes hardly ever stand here twice.
  std::string join() && {
    std::string text;
    text.reserve(static_cast<std::size_t>(m_size));
    for (QByteArray& piece : m_pieces) {
      text.append(piece.constData(), static_cast<std::size_t>(piece.size()));
      piece = {};
    }
    m_pieces.clear();
    return text;
  }

 private:
  std::vector<QByteArray> m_pieces;
  std::int64_t m_size = 0;
};

}  // namespace varnel::client
