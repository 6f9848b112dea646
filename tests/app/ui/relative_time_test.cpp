// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/relative_time.h"

#include <gtest/gtest.h>

#include <limits>

namespace varnel::ui {
namespace {

TEST(RelativeTime, TakesTheLargestWholeUnit) {
  const struct {
    double age;
    const char* expected;
  } cases[] = {
      {-500, "now"},
      {59, "now"},
      {60, "1 minute ago"},
      {179, "2 minutes ago"},
      {3600, "1 hour ago"},
      {86'399, "23 hours ago"},
      {2.0 * 86'400, "2 days ago"},
      {8.0 * 86'400, "1 week ago"},
      {40.0 * 86'400, "1 month ago"},
      {800.0 * 86'400, "2 years ago"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(relativeTime(1e9 - each.age, 1e9, QLocale(QStringLiteral("en_US"))).toStdString(), each.expected)
        << each.age;
  }
}

TEST(RelativeTime, SpeaksTheLocaleAndSurvivesWhatIsNoTime) {
  EXPECT_EQ(relativeTime(880, 1000, QLocale(QStringLiteral("fr_FR"))), QStringLiteral("il y a 2 minutes"));
  EXPECT_EQ(relativeTime(1000 - 3600, 1000, QLocale::c()), QStringLiteral("1 hour ago"));
  EXPECT_EQ(relativeTime(std::numeric_limits<double>::quiet_NaN(), 1000), QString());
  EXPECT_EQ(relativeTime(-std::numeric_limits<double>::infinity(), 1000), QString());
  EXPECT_FALSE(relativeTime(-1e300, 1000).isNull()) << "a nonsense moment is shown somehow, not fatal";
}

}  // namespace
}  // namespace varnel::ui
