// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/relative_time.h"

#include <unicode/reldatefmt.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "app/ui/icu_text.h"

namespace varnel::ui {
namespace {

struct Step {
  double seconds;  ///< the length of the unit; used from one unit on
  URelativeDateTimeUnit unit;
};

constexpr std::array kSteps{
    Step{31'557'600, UDAT_REL_UNIT_YEAR}, Step{2'629'800, UDAT_REL_UNIT_MONTH}, Step{604'800, UDAT_REL_UNIT_WEEK},
    Step{86'400, UDAT_REL_UNIT_DAY},      Step{3'600, UDAT_REL_UNIT_HOUR},      Step{60, UDAT_REL_UNIT_MINUTE},
};

}  // namespace

QString relativeTime(double moment, double now, const QLocale& locale) {
  const double age = now - moment;
  if (!std::isfinite(age)) return {};
  UErrorCode status = U_ZERO_ERROR;
  const icu::RelativeDateTimeFormatter formatter(toIcu(locale), status);
  icu::UnicodeString text;
  const auto* const step = std::ranges::find_if(kSteps, [age](const Step& each) { return age >= each.seconds; });
  if (step == kSteps.end()) {
    formatter.format(UDAT_DIRECTION_PLAIN, UDAT_ABSOLUTE_NOW, text, status);
  } else {
    formatter.formatNumeric(-std::floor(age / step->seconds), step->unit, text, status);
  }
  return U_SUCCESS(status) != 0 ? toQString(text) : QString();
}

}  // namespace varnel::ui
