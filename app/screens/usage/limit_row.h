// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <vector>

#include "core/wire/usage.h"

namespace varnel::screens {

/// One window of the rate limit as it is shown.
struct LimitRow {
  QString position;     ///< "0" or "1": two windows may be equal in all else
  QString title;        ///< "5-hour limit"
  QString percentText;  ///< "42% left"
  int percentLeft = 0;  ///< 0 to 100
  QString tone;
  QString spoken;

  [[nodiscard]] const QString& identity() const { return position; }
  bool operator==(const LimitRow&) const = default;
};

/// 100 less what is used, within 0 and 100.
int percentLeft(const wire::RateLimitWindow& window);
QString percentText(const wire::RateLimitWindow& window);
/// Red from 90 % used, orange from 75 %, the accent below; decided on the raw number.
QString limitTone(const wire::RateLimitWindow& window);
/// "Weekly token limit"; the rows of a summary are titled without the word "token".
QString limitTitle(const wire::RateLimitWindow& window);
/// When the window starts anew, in a sentence.
QString resetMessage(const wire::RateLimitWindow& window);

/// The windows of a usage report: the primary one (or else the general one), then the secondary one.
std::vector<LimitRow> makeLimitRows(const wire::UsageEnvelope& usage);

}  // namespace varnel::screens
