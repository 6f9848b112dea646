// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/notify.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QtDBus/QDBusConnection>
#include <filesystem>
#include <span>
#include <string_view>

#include "app/platform/defaults_store_file.h"
#include "app/platform/reminder_centre_system.h"

namespace varnel {

std::optional<int> notifyFromCommandLine(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() != 3 || std::string_view(arguments[1]) != "--notify") return std::nullopt;
  const QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("varnel-app"));
  const QString directory = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
  platform::DefaultsFileStore store(std::filesystem::path(directory.toStdString()) / "defaults");
  return platform::showReminder(QDBusConnection::sessionBus(), store, arguments[2]) ? 0 : 1;
}

}  // namespace varnel
