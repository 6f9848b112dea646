// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/capitalised.h"

namespace varnel::screens {

QString capitalised(const QString& text) {
  QString result = text.toLower();
  bool atStart = true;
  for (QChar& each : result) {
    if (atStart) each = each.toUpper();
    atStart = each.isSpace();
  }
  return result;
}

}  // namespace varnel::screens
