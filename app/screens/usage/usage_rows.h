// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <cstdint>
#include <vector>

#include "core/wire/usage.h"

namespace varnel::screens {

/// One bar of the daily chart.
struct UsageBar {
  QString day;         ///< as the bridge wrote it
  QString tokensText;  ///< digits grouped
  double share = 0;    ///< of the axis: 0 to 1
  bool latest = false;
  QString spoken;

  [[nodiscard]] const QString& identity() const { return day; }
  bool operator==(const UsageBar&) const = default;
};

/// One grid line of the chart.
struct UsageTick {
  QString label;
  double share = 0;  ///< of the axis, from its foot

  [[nodiscard]] const QString& identity() const { return label; }
  bool operator==(const UsageTick&) const = default;
};

/// A figure under its title: a metric, or a model's part of a conversation.
struct UsageFigure {
  QString key;
  QString title;
  QString value;

  [[nodiscard]] const QString& identity() const { return key; }
  bool operator==(const UsageFigure&) const = default;
};

/// The end of the value axis for a chart whose highest bar is `highest`: the next of 1, 2, 3, 4, 5, 6, 8, 10 times a
/// power of ten, so that halves of it are round numbers too. 1 for nothing.
double axisEnd(double highest);

/// A bar for every day in the order the days come; buckets of one day stand on each other.
std::vector<UsageBar> makeUsageBars(const std::vector<wire::DailyUsageBucket>& buckets);
std::vector<UsageTick> makeUsageTicks(const std::vector<wire::DailyUsageBucket>& buckets);
std::vector<UsageFigure> makeUsageMetrics(const wire::UsageSummary& summary);
std::vector<UsageFigure> makeUsageBreakdown(const wire::ThreadUsageSummary& thread);

}  // namespace varnel::screens
