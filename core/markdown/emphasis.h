// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace varnel::markdown {

/// How many of each style begin or end at a place.
struct StyleCounts {
  std::size_t emphasis = 0;
  std::size_t strong = 0;
  std::size_t strikethrough = 0;
};

/// A run of "*", "_" or "~". What is left of it when all is resolved stands as text between the ends and the
/// beginnings.
struct Delimiter {
  char marker = '*';
  std::size_t length = 0;
  bool canOpen = false;
  bool canClose = false;
  std::size_t left = 0;
  StyleCounts ends;
  StyleCounts begins;
};

/// The run at `at`, where a text has one of the markers.
Delimiter delimiterAt(std::string_view text, std::size_t at);

/// Pairs the runs of a text.
class DelimiterStack {
 public:
  /// The run's number.
  std::size_t push(const Delimiter& delimiter);
  [[nodiscard]] std::size_t size() const { return m_delimiters.size(); }
  [[nodiscard]] const Delimiter& operator[](std::size_t number) const { return m_delimiters[number]; }

  /// Pairs the runs from number `bottom` on with each other; none of them takes part in any later pairing.
  void resolve(std::size_t bottom);

 private:
  void close(std::size_t closer);
  static void pair(Delimiter& opener, Delimiter& closer);

  std::vector<Delimiter> m_delimiters;
  std::vector<std::size_t> m_unresolved;  ///< numbers, ascending
  std::vector<std::size_t> m_openers;     ///< numbers, ascending
  /// By the kind of the closing run, below which number no run can open it.
  std::array<std::size_t, 14> m_bottoms{};
};

}  // namespace varnel::markdown
