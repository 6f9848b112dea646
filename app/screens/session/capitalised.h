// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

namespace varnel::screens {

/// Each word with its first letter in upper case and the others in lower case.
QString capitalised(const QString& text);

}  // namespace varnel::screens
