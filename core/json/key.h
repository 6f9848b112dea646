// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <bit>
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
    const std::size_t spare = kWord - std::min(m_size, kWord);
    constexpr std::uint64_t kAll = ~std::uint64_t{0};
    m_mask = std::endian::native == std::endian::little ? kAll >> (8 * spare) : kAll << (8 * spare);
  }

  [[nodiscard]] constexpr std::string_view name() const { return m_name; }
  /// Bytes with quotes and colon.
  [[nodiscard]] constexpr std::size_t size() const { return m_size; }

  /// Whether the text at `p` begins with it.
  [[nodiscard]] bool stands(const char* p, const char* end) const {
    if (static_cast<std::size_t>(end - p) < std::max(m_size, kWord)) return false;
    if (m_size < kWord) return ((word(p) ^ word(m_text.data())) & m_mask) == 0;
    // Two words that overlap cover most names.
    const std::size_t last = m_size - kWord;
    if (word(p) != word(m_text.data()) || word(p + last) != word(m_text.data() + last)) return false;
    return m_size <= 2 * kWord || std::memcmp(p + kWord, m_text.data() + kWord, m_size - kWord) == 0;
  }

 private:
  static constexpr std::size_t kWord = 8;
  static constexpr std::size_t kLongest = 40;

  static std::uint64_t word(const char* p) {
    std::uint64_t value = 0;
    std::memcpy(&value, p, kWord);
    return value;
  }

  std::string_view m_name;
  std::size_t m_size;
  std::uint64_t m_mask = 0;  ///< the bytes of a word that a shorter name takes
  std::array<char, kLongest> m_text{};
};

}  // namespace varnel::json
