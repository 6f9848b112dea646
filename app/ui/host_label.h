// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

namespace varnel::ui {

/// How the screens name the machine that the application is paired with; the bridge does not send a name.
inline QString hostLabel() {
  return QCoreApplication::translate("HostLabel", "your host");
}

}  // namespace varnel::ui
