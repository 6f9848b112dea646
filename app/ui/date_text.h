// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QLocale>
#include <QtCore/QString>
#include <QtCore/QTimeZone>

namespace varnel::ui {

enum class DateForm {
  MediumDate,            ///< "Jan 7, 2025"
  MediumDateAndTime,     ///< "Jan 7, 2025, 1:34 PM"
  FullDateAndShortTime,  ///< "Tuesday, January 7, 2025 at 1:34 PM"
  ShortTime,             ///< "1:34 PM"
};

/// A moment (seconds since 1970) in the words of the locale and the time of the zone, which is an IANA name. Empty
/// when the moment is not finite.
QString dateText(double moment, DateForm form, const QLocale& locale = QLocale(),
                 const QByteArray& zone = QTimeZone::systemTimeZoneId());

}  // namespace varnel::ui
