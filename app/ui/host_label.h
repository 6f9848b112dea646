// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

namespace varnel::ui {

/// How the screens name the machine that the application is paired with; the bridge does not send a name. Set when the
/// application is built, by the CMake option VARNEL_HOST_LABEL.
QString hostLabel();

}  // namespace varnel::ui
