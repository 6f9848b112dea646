// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <QtCore/QLocale>
#include <QtCore/QString>

/// Between Qt's words for things and ICU's.
namespace varnel::ui {

inline QString toQString(const icu::UnicodeString& text) {
  return QString::fromUtf16(text.getBuffer(), text.length());
}

inline icu::Locale toIcu(const QLocale& locale) {
  // ICU has no words for the locale C; its own fallback knows no plural.
  const QByteArray name = locale.language() == QLocale::C ? QByteArray("en") : locale.name().toLatin1();
  return {name.constData()};
}

}  // namespace varnel::ui
