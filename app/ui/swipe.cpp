// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/swipe.h"

#include <algorithm>

namespace varnel::ui {
namespace {

constexpr double kFullShare = 0.6;
constexpr double kBeyond = 0.2;

struct Edge {
  double actions;
  bool full;
};

double followedOn(Edge edge, double distance) {
  if (edge.full) return distance;
  if (edge.actions <= 0) return 0;
  return std::min(distance, edge.actions) + std::max(0.0, distance - edge.actions) * kBeyond;
}

}  // namespace

// NOLINTNEXTLINE(readability-function-size): QML hands over plain values
Swipe::Outcome Swipe::outcome(double offset, double width, double leading, double trailing, bool leadingFull,
                              bool trailingFull) {
  const bool toTheRight = offset > 0;
  const Edge edge =
      toTheRight ? Edge{.actions = leading, .full = leadingFull} : Edge{.actions = trailing, .full = trailingFull};
  const double distance = toTheRight ? offset : -offset;
  if (edge.actions <= 0) return Closed;
  if (edge.full && distance >= width * kFullShare) return toTheRight ? LeadingFull : TrailingFull;
  if (distance < edge.actions / 2) return Closed;
  return toTheRight ? LeadingOpen : TrailingOpen;
}

double Swipe::followed(double offset, double leading, double trailing, bool leadingFull, bool trailingFull) {
  if (offset > 0) return followedOn({.actions = leading, .full = leadingFull && leading > 0}, offset);
  return -followedOn({.actions = trailing, .full = trailingFull && trailing > 0}, -offset);
}

}  // namespace varnel::ui
