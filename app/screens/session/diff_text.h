// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include "core/json/value.h"

namespace varnel::screens {

/// The changes to files that a detail names, as HTML made out of escaped text: file by file, each line with its
/// sign, of the classes file, heading, added and removed for which the view has a style sheet.
/// Empty when it names none. What could deceive the reader stands as escapes.
QString diffText(const json::JSONValue& detail);

}  // namespace varnel::screens
