// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/date_text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace varnel::ui {
namespace {

TEST(DateText, FollowsLocaleAndZone) {
  constexpr double kMoment = 1'736'253'240;  // 2025-01-07 12:34 UTC
  const QLocale english(QLocale::English, QLocale::UnitedStates);
  const QLocale french(QLocale::French, QLocale::France);
  EXPECT_EQ(dateText(kMoment, DateForm::MediumDate, english, "UTC"), QStringLiteral("Jan 7, 2025"));
  EXPECT_TRUE(
      dateText(kMoment, DateForm::MediumDateAndTime, english, "UTC").startsWith(QStringLiteral("Jan 7, 2025, 12:34")));
  EXPECT_TRUE(
      dateText(kMoment, DateForm::FullDateAndShortTime, english, "Asia/Tokyo").contains(QStringLiteral("9:34")));
  EXPECT_EQ(dateText(kMoment, DateForm::MediumDate, french, "UTC"), QStringLiteral("7 janv. 2025"));
  EXPECT_EQ(dateText(kMoment, DateForm::ShortTime, french, "Europe/Paris"), QStringLiteral("13:34"));
  EXPECT_EQ(dateText(std::nan(""), DateForm::ShortTime), QString());
}

}  // namespace
}  // namespace varnel::ui
