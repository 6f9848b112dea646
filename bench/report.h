// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace varnel::bench {

/// What a figure is held to, and where we want it.
struct Bounds {
  enum class Sense { AtLeast, AtMost };
  Sense sense = Sense::AtLeast;
  std::optional<double> must;
  std::optional<double> goal;
};

/// The table at the end of a benchmark.
class Report {
 public:
  /// Lines are kept in the order of their figures. A figure that could not be measured is a missed one.
  void add(std::string figure, std::string what, std::optional<double> measured, Bounds bounds);

  /// Prints the table and says whether every "must" is met.
  [[nodiscard]] bool print() const;

 private:
  struct Line {
    std::string figure;
    std::string what;
    std::optional<double> measured;
    Bounds bounds;
  };
  static bool within(const Line& line, std::optional<double> bound);
  static std::string verdict(const Line& line);

  std::vector<Line> m_lines;
};

}  // namespace varnel::bench
