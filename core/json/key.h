// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace varnel::json {

/// A member's name as most writers put it, `"name":`, laid out so that one comparison of eight bytes tells most texts
/// apart. Names here hold nothing that JSON would escape.
class Key {
 public:
  constexpr explicit Key(std::string_view name) : m_name(name), m_size(name.size() + 3) {
    m_text[0] = '"';
    std::ranges::copy(name, m_text.begin() + 1);
    m_text[name.size() + 1] = '"';
    m_text[name.size() + 2] = ':';
  }

  [[nodiscard]] constexpr std::string_view name() const { return m_name; }
  /// Bytes with quotes and colon.
  [[nodiscard]] constexpr std::size_t size() const { return m_size; }

  /// Whether the text at `p` begins with it.
  [[nodiscard]] bool stands(const char* p, const char* end) const {
    if (static_cast<std::size_t>(end - p) < std::max(m_size, kWord)) return false;
    std::uint64_t there = 0;
    std::uint64_t wanted = 0;
    std::memcpy(&there, p, kWord);
    std::memcpy(&wanted, m_text.data(), kWord);
    if (m_size >= kWord) return there == wanted && std::memcmp(p + kWord, m_text.data() + kWord, m_size - kWord) == 0;
    return std::memcmp(p, m_text.data(), m_size) == 0;
  }

 private:
  static constexpr std::size_t kWord = 8;
  static constexpr std::size_t kLongest = 40;

  std::string_view m_name;
  std::size_t m_size;
  std::array<char, kLongest> m_text{};
};

}  // namespace varnel::json
