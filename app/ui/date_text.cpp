// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/date_text.h"

#include <unicode/datefmt.h>
#include <unicode/timezone.h>

#include <cmath>
#include <memory>

#include "app/ui/icu_text.h"

namespace varnel::ui {
namespace {

using Style = icu::DateFormat::EStyle;

struct Styles {
  Style date;
  Style time;
};

Styles stylesOf(DateForm form) {
  switch (form) {
    case DateForm::MediumDate:
      return {.date = icu::DateFormat::kMedium, .time = icu::DateFormat::kNone};
    case DateForm::MediumDateAndTime:
      return {.date = icu::DateFormat::kMedium, .time = icu::DateFormat::kShort};
    case DateForm::FullDateAndShortTime:
      return {.date = icu::DateFormat::kFull, .time = icu::DateFormat::kShort};
    case DateForm::ShortTime:
      return {.date = icu::DateFormat::kNone, .time = icu::DateFormat::kShort};
  }
  return {.date = icu::DateFormat::kMedium, .time = icu::DateFormat::kShort};
}

}  // namespace

QString dateText(double moment, DateForm form, const QLocale& locale, const QByteArray& zone) {
  constexpr double kMillisecondsInSecond = 1000;
  if (!std::isfinite(moment)) return {};
  const auto [date, time] = stylesOf(form);
  const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(date, time, toIcu(locale)));
  if (!format) return {};
  format->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone.constData())));
  icu::UnicodeString text;
  format->format(moment * kMillisecondsInSecond, text);
  return toQString(text);
}

}  // namespace varnel::ui
