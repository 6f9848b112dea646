// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/report.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace varnel::bench {

namespace {

std::string shown(std::optional<double> value, const char* sign) {
  if (!value) return "-";
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%s%.*f", sign, *value < 10 ? 2 : 1, *value);
  return buffer.data();
}

}  // namespace

void Report::add(std::string figure, std::string what, std::optional<double> measured, Bounds bounds) {
  const auto place = std::ranges::upper_bound(m_lines, figure, {}, &Line::figure);
  m_lines.insert(place, {std::move(figure), std::move(what), measured, bounds});
}

bool Report::within(const Line& line, std::optional<double> bound) {
  if (!line.measured || !bound) return false;
  return line.bounds.sense == Bounds::Sense::AtLeast ? *line.measured >= *bound : *line.measured <= *bound;
}

std::string Report::verdict(const Line& line) {
  if (!line.measured) return "NOT MEASURED";
  if (within(line, line.bounds.goal)) return "goal";
  if (!line.bounds.must) return line.bounds.goal ? "below the goal" : "";
  return within(line, line.bounds.must) ? "must" : "MISSED";
}

bool Report::print() const {
  bool met = true;
  std::printf("\n%-3s  %-58s %9s %9s %9s  %s\n", "", "figure", "measured", "must", "goal", "reached");
  for (const Line& line : m_lines) {
    const char* sign = line.bounds.sense == Bounds::Sense::AtLeast ? ">= " : "<= ";
    std::printf("%-3s  %-58s %9s %9s %9s  %s\n", line.figure.c_str(), line.what.c_str(),
                shown(line.measured, "").c_str(), shown(line.bounds.must, sign).c_str(),
                shown(line.bounds.goal, sign).c_str(), verdict(line).c_str());
    met = met && (!line.bounds.must || within(line, line.bounds.must));
  }
  return met;
}

}  // namespace varnel::bench
