// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>

namespace varnel::ui {

/// A moment as seen from `now` (both seconds since 1970), in the words of the locale: "2 minutes ago", "yesterday".
/// Under a minute, and for a moment that lies ahead (clocks differ), it is "now". Empty when the moment is not finite.
QString relativeTime(double moment, double now, const QLocale& locale = QLocale());

}  // namespace varnel::ui
