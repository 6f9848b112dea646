// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/usage/usage_rows.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <algorithm>
#include <array>
#include <boost/describe/class.hpp>
#include <cmath>
#include <optional>
#include <utility>

#include "app/lists/record_roles.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(UsageBar, (), (day, tokensText, share, latest, spoken))
BOOST_DESCRIBE_STRUCT(UsageTick, (), (label, share))
BOOST_DESCRIBE_STRUCT(UsageFigure, (), (key, title, value))

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(Usage)
};

QString grouped(std::int64_t number) {
  return QLocale().toString(qlonglong{number});
}

struct Day {
  QString name;
  std::int64_t tokens = 0;
};

std::vector<Day> daysOf(const std::vector<wire::DailyUsageBucket>& buckets) {
  std::vector<Day> days;
  for (const auto& bucket : buckets) {
    const QString name = QString::fromStdString(bucket.startDate);
    const auto same = std::ranges::find(days, name, &Day::name);
    if (same == days.end()) {
      days.push_back({.name = name, .tokens = bucket.tokens});
    } else {
      same->tokens += bucket.tokens;
    }
  }
  return days;
}

double axisEndOf(const std::vector<Day>& days) {
  double highest = 0;
  for (const Day& day : days) highest = std::max(highest, static_cast<double>(day.tokens));
  return axisEnd(highest);
}

QString metricText(std::optional<std::int64_t> number, const QString& suffix) {
  return number ? grouped(*number) + suffix : QStringLiteral("—");
}

}  // namespace

double axisEnd(double highest) {
  if (highest <= 1) return 1;
  const double magnitude = std::pow(10.0, std::floor(std::log10(highest)));
  static constexpr std::array kRound{1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 8.0, 10.0};
  const auto* const round = std::ranges::find_if(kRound, [&](double each) { return each * magnitude >= highest; });
  return (round == kRound.end() ? kRound.back() : *round) * magnitude;
}

std::vector<UsageBar> makeUsageBars(const std::vector<wire::DailyUsageBucket>& buckets) {
  const auto days = daysOf(buckets);
  const double end = axisEndOf(days);
  std::vector<UsageBar> bars;
  bars.reserve(days.size());
  for (const Day& day : days) {
    const QString tokens = grouped(day.tokens);
    bars.push_back({.day = day.name,
                    .tokensText = tokens,
                    .share = std::clamp(static_cast<double>(day.tokens) / end, 0.0, 1.0),
                    .latest = day.name == QString::fromStdString(buckets.back().startDate),
                    .spoken = Words::tr("Day %1, Tokens %2").arg(day.name, tokens)});
  }
  return bars;
}

std::vector<UsageTick> makeUsageTicks(const std::vector<wire::DailyUsageBucket>& buckets) {
  const double end = axisEndOf(daysOf(buckets));
  std::vector<UsageTick> ticks;
  for (const double share : {0.0, 0.5, 1.0}) {
    const double value = end * share;
    if (value != std::floor(value)) continue;
    ticks.push_back({.label = grouped(static_cast<std::int64_t>(value)), .share = share});
  }
  return ticks;
}

std::vector<UsageFigure> makeUsageMetrics(const wire::UsageSummary& summary) {
  const QString days = Words::tr(" days");
  return {
      {.key = QStringLiteral("lifetime"),
       .title = Words::tr("Lifetime"),
       .value = metricText(summary.lifetimeTokens, {})},
      {.key = QStringLiteral("peak"), .title = Words::tr("Peak day"), .value = metricText(summary.peakDailyTokens, {})},
      {.key = QStringLiteral("current"),
       .title = Words::tr("Current streak"),
       .value = metricText(summary.currentStreakDays, days)},
      {.key = QStringLiteral("longest"),
       .title = Words::tr("Longest streak"),
       .value = metricText(summary.longestStreakDays, days)},
  };
}

std::vector<UsageFigure> makeUsageBreakdown(const wire::ThreadUsageSummary& thread) {
  std::vector<UsageFigure> figures;
  figures.reserve(thread.groups.size());
  for (const auto& group : thread.groups) {
    figures.push_back({.key = QString::fromStdString(group.identity()),
                       .title = group.model ? QString::fromStdString(*group.model) : Words::tr("Model"),
                       .value = grouped(group.totalTokens.value_or(0))});
  }
  return figures;
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::UsageBar>>&
varnel::lists::rolesOf<varnel::screens::UsageBar>();
template const std::vector<varnel::lists::Role<varnel::screens::UsageTick>>&
varnel::lists::rolesOf<varnel::screens::UsageTick>();
template const std::vector<varnel::lists::Role<varnel::screens::UsageFigure>>&
varnel::lists::rolesOf<varnel::screens::UsageFigure>();
