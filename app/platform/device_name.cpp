// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/device_name.h"

#include <QString>
#include <QSysInfo>

namespace varnel::platform {

std::string deviceName() {
  const auto name = QSysInfo::machineHostName().toStdString();
  return name.empty() ? "Phone" : name;
}

}  // namespace varnel::platform
