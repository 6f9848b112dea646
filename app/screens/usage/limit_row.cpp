// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/usage/limit_row.h"

#include <QtCore/QCoreApplication>
#include <algorithm>
#include <boost/describe/class.hpp>

#include "app/lists/record_roles.h"
#include "app/ui/date_text.h"
#include "core/live/rate_limit.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(LimitRow, (), (position, title, percentText, percentLeft, tone, spoken))

namespace {

constexpr std::int64_t kFiveHours = 300;
constexpr std::int64_t kWeek = 10080;
constexpr std::int64_t kWhole = 100;
constexpr std::int64_t kScarce = 75;
constexpr std::int64_t kAlmostGone = 90;

struct Words {
  Q_DECLARE_TR_FUNCTIONS(Limits)
};

QString shortTitle(const wire::RateLimitWindow& window) {
  if (window.windowDurationMins == kFiveHours) return Words::tr("5-hour limit");
  if (window.windowDurationMins == kWeek) return Words::tr("Weekly limit");
  return Words::tr("Token limit");
}

}  // namespace

int percentLeft(const wire::RateLimitWindow& window) {
  return static_cast<int>(kWhole - std::clamp<std::int64_t>(window.usedPercent, 0, kWhole));
}

QString percentText(const wire::RateLimitWindow& window) {
  return Words::tr("%1% left").arg(percentLeft(window));
}

QString limitTone(const wire::RateLimitWindow& window) {
  if (window.usedPercent >= kAlmostGone) return QStringLiteral("red");
  if (window.usedPercent >= kScarce) return QStringLiteral("orange");
  return QStringLiteral("accent");
}

QString limitTitle(const wire::RateLimitWindow& window) {
  if (window.windowDurationMins == kFiveHours) return Words::tr("5-hour token limit");
  if (window.windowDurationMins == kWeek) return Words::tr("Weekly token limit");
  return Words::tr("Token limit");
}

QString resetMessage(const wire::RateLimitWindow& window) {
  if (!window.resetsAt) return Words::tr("Codex did not provide a reset time for this limit.");
  return Words::tr("Your token limit resets %1.")
      .arg(ui::dateText(*window.resetsAt, ui::DateForm::FullDateAndShortTime));
}

std::vector<LimitRow> makeLimitRows(const wire::UsageEnvelope& usage) {
  std::vector<LimitRow> rows;
  for (const auto& window : {live::shownWindow(usage), usage.secondary}) {
    if (!window) continue;
    const QString title = shortTitle(*window);
    const QString left = percentText(*window);
    rows.push_back({.position = QString::number(rows.size()),
                    .title = title,
                    .percentText = left,
                    .percentLeft = percentLeft(*window),
                    .tone = limitTone(*window),
                    .spoken = title + QStringLiteral(", ") + left});
  }
  return rows;
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::LimitRow>>&
varnel::lists::rolesOf<varnel::screens::LimitRow>();
