// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtCore/QLocale>

#include "app/screens/usage/limit_row.h"
#include "app/screens/usage/usage_rows.h"

namespace varnel::screens {
namespace {

using testing::HasSubstr;

wire::RateLimitWindow window(std::int64_t used, std::optional<std::int64_t> minutes = std::nullopt,
                             std::optional<double> resetsAt = std::nullopt) {
  return {.usedPercent = used, .windowDurationMins = minutes, .resetsAt = resetsAt};
}

TEST(Limits, PercentAndToneFollowWhatIsUsed) {
  struct Case {
    std::int64_t used;
    int left;
    const char* tone;
  };
  for (const Case& each : {Case{-5, 100, "accent"},
                           {0, 100, "accent"},
                           {74, 26, "accent"},
                           {75, 25, "orange"},
                           {89, 11, "orange"},
                           {90, 10, "red"},
                           {100, 0, "red"},
                           {120, 0, "red"}}) {
    EXPECT_EQ(percentLeft(window(each.used)), each.left) << each.used;
    EXPECT_EQ(limitTone(window(each.used)), QLatin1String(each.tone)) << each.used;
  }
  EXPECT_EQ(percentText(window(58)), QStringLiteral("42% left"));
}

TEST(Limits, WindowsAreNamedByTheirLengthAlone) {
  EXPECT_EQ(limitTitle(window(0, 300)), QStringLiteral("5-hour token limit"));
  EXPECT_EQ(limitTitle(window(0, 10080)), QStringLiteral("Weekly token limit"));
  EXPECT_EQ(limitTitle(window(0, 301)), QStringLiteral("Token limit"));
  EXPECT_EQ(limitTitle(window(0)), QStringLiteral("Token limit"));
}

TEST(Limits, ASummaryTakesThePrimaryWindowOrElseTheGeneralOne) {
  wire::UsageEnvelope usage;
  EXPECT_TRUE(makeLimitRows(usage).empty());
  usage.rateLimit = window(10, 300);
  usage.secondary = window(20, 10080);
  auto rows = makeLimitRows(usage);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].spoken, QStringLiteral("5-hour limit, 90% left"));
  EXPECT_EQ(rows[1].title, QStringLiteral("Weekly limit"));
  usage.primary = window(30);
  rows = makeLimitRows(usage);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].spoken, QStringLiteral("Token limit, 70% left"));
}

TEST(Limits, TheResetIsToldInASentence) {
  EXPECT_EQ(resetMessage(window(1)), QStringLiteral("Codex did not provide a reset time for this limit."));
  const auto message = resetMessage(window(1, 300, 1'736'253'240.0)).toStdString();
  EXPECT_THAT(message, testing::StartsWith("Your token limit resets "));
  EXPECT_THAT(message, HasSubstr("2025"));
  EXPECT_THAT(message, testing::EndsWith("."));
}

class Figures : public testing::Test {
 protected:
  void SetUp() override { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
  void TearDown() override { QLocale::setDefault(QLocale::c()); }
};

TEST_F(Figures, MetricsAreGroupedAndADashWhenAbsent) {
  const auto metrics = makeUsageMetrics({.currentStreakDays = 1, .lifetimeTokens = 1'000'000, .longestStreakDays = 0});
  ASSERT_EQ(metrics.size(), 4U);
  EXPECT_EQ(metrics[0].value, QStringLiteral("1,000,000"));
  EXPECT_EQ(metrics[1].value, QStringLiteral("—"));
  EXPECT_EQ(metrics[2].value, QStringLiteral("1 days"));
  EXPECT_EQ(metrics[3].value, QStringLiteral("0 days"));
}

TEST_F(Figures, BarsStandInTheOrderReceivedAndEqualDaysShareOne) {
  const auto bars = makeUsageBars({{.startDate = "2025-01-07", .tokens = 900},
                                   {.startDate = "x", .tokens = 0},
                                   {.startDate = "2025-01-07", .tokens = 1100}});
  ASSERT_EQ(bars.size(), 2U);
  EXPECT_EQ(bars[0].spoken, QStringLiteral("Day 2025-01-07, Tokens 2,000"));
  EXPECT_DOUBLE_EQ(bars[0].share, 1);
  EXPECT_TRUE(bars[0].latest) << "its bucket was received last";
  EXPECT_DOUBLE_EQ(bars[1].share, 0);
  EXPECT_TRUE(makeUsageBars({}).empty());
}

TEST_F(Figures, TheAxisEndsAtARoundNumberThatHoldsEveryBar) {
  struct Case {
    double highest;
    double end;
  };
  for (const Case& each : {Case{0, 1}, {1, 1}, {7, 8}, {10, 10}, {11, 20}, {61'000, 80'000}, {950'001, 1'000'000}}) {
    EXPECT_DOUBLE_EQ(axisEnd(each.highest), each.end) << each.highest;
  }
  const auto ticks = makeUsageTicks({{.startDate = "a", .tokens = 61'000}});
  ASSERT_EQ(ticks.size(), 3U);
  EXPECT_EQ(ticks.back().label, QStringLiteral("80,000"));
}

TEST_F(Figures, ABreakdownWithoutModelAndTotalStillReads) {
  const auto figures =
      makeUsageBreakdown({.groups = {wire::ThreadUsageGroup{}, {.totalTokens = 12'345, .model = "m"}}});
  ASSERT_EQ(figures.size(), 2U);
  EXPECT_EQ(figures[0].title + figures[0].value, QStringLiteral("Model0"));
  EXPECT_EQ(figures[1].title + figures[1].value, QStringLiteral("m12,345"));
}

}  // namespace
}  // namespace varnel::screens
