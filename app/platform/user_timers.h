// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <filesystem>
#include <string>

namespace varnel::platform {

/// One-shot timers of the user's systemd, each a pair of unit files "ID.timer" and "ID.service" that outlives a reboot
/// and catches up on a moment that was slept through. At its moment a timer runs `program --notify ID`. Main thread.
class UserTimers : public QObject {
  Q_OBJECT

 public:
  /// `unitDirectory` is where the user's manager looks for units.
  UserTimers(QDBusConnection bus, std::filesystem::path unitDirectory, std::string program, QObject* parent = nullptr);

  /// At that second of the local clock (seconds since 1970), in the place of the timer of that id. False, with nothing
  /// left behind, when no manager answers or it refuses.
  QCoro::Task<bool> start(std::string id, double at);
  /// Does not wait; costs nothing when there is no such timer.
  void remove(const std::string& id);

 private:
  [[nodiscard]] std::filesystem::path unit(const std::string& name) const;
  [[nodiscard]] bool writeUnits(const std::string& id, double at) const;
  void removeUnits(const std::string& id) const;
  [[nodiscard]] bool hasUnits(const std::string& id) const;
  QCoro::Task<bool> call(QDBusMessage message);

  QDBusConnection m_bus;
  std::filesystem::path m_unitDirectory;
  std::string m_program;
};

/// Where the user's manager looks first: "systemd/user" in the configuration folder.
std::filesystem::path userUnitDirectory();

}  // namespace varnel::platform
