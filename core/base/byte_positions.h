// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace varnel::base {

/// Where a byte stands in a text. Finding all places at once is several times as quick as looking for one after the
/// other where they lie a line apart. Uses what vectors the processor has.
class BytePositions {
 public:
  /// Forgets the places in the text before and reuses their memory.
  void find(std::string_view text, char byte);

  [[nodiscard]] std::span<const std::size_t> all() const { return {m_places.get(), m_count}; }

 private:
  void makeRoom(std::size_t more);

  // A vector would clear what is overwritten at once.
  std::unique_ptr<std::size_t[]> m_places;  // NOLINT(modernize-avoid-c-arrays)
  std::size_t m_capacity = 0;
  std::size_t m_count = 0;
};

}  // namespace varnel::base
