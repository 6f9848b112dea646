// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/user_timers.h"

#include <QCoroDBusPendingCall>
#include <QDateTime>
#include <QPointer>
#include <QStandardPaths>
#include <cmath>
#include <system_error>
#include <utility>

#include "app/platform/atomic_file.h"

namespace varnel::platform {
namespace {

namespace fs = std::filesystem;

/// No calendar of the manager reaches further.
constexpr double kLastSecond = 253402300799;  // of the year 9999

QDBusMessage managerCall(const QString& method) {
  auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.systemd1"),
                                                QStringLiteral("/org/freedesktop/systemd1"),
                                                QStringLiteral("org.freedesktop.systemd1.Manager"), method);
  message.setAutoStartService(false);
  return message;
}

QString timerOf(const std::string& id) {
  return QString::fromStdString(id + ".timer");
}

/// One word of a command line in a unit file, whatever is in it.
std::string quoted(const std::string& word) {
  std::string text = "\"";
  for (const char c : word) {
    if (c == '"' || c == '\\' || c == '%' || c == '$') text += c == '%' || c == '$' ? c : '\\';
    text += c;
  }
  return text + "\"";
}

std::string timerText(double at) {
  const auto moment = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(std::floor(at)));
  return "[Unit]\nDescription=Reminder of Varnel\n\n[Timer]\nOnCalendar=" +
         moment.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toStdString() +
         "\nAccuracySec=1s\nPersistent=true\n\n[Install]\nWantedBy=timers.target\n";
}

/// At login the manager may be there before anything that shows notifications: tried again for half an hour.
std::string serviceText(const std::string& program, const std::string& id) {
  return "[Unit]\nDescription=Reminder of Varnel\nStartLimitIntervalSec=2h\nStartLimitBurst=60\n\n"
         "[Service]\nType=oneshot\nExecStart=" +
         quoted(program) + " --notify " + quoted(id) + "\nRestart=on-failure\nRestartSec=30\n";
}

}  // namespace

UserTimers::UserTimers(QDBusConnection bus, fs::path unitDirectory, std::string program, QObject* parent)
    : QObject(parent),
      m_bus(std::move(bus)),
      m_unitDirectory(std::move(unitDirectory)),
      m_program(std::move(program)) {}

QCoro::Task<bool> UserTimers::start(std::string id, double at) {
  const QPointer<UserTimers> self(this);
  if (std::isnan(at) || at < 0 || at > kLastSecond) co_return false;
  auto ask =
      QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                     QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetNameOwner"));
  ask << QStringLiteral("org.freedesktop.systemd1");
  const bool isThere = co_await call(ask);
  if (self.isNull() || !isThere || !writeUnits(id, at)) co_return false;

  auto enable = managerCall(QStringLiteral("EnableUnitFiles"));
  enable << QStringList{timerOf(id)} << false << true;
  auto restart = managerCall(QStringLiteral("RestartUnit"));
  restart << timerOf(id) << QStringLiteral("replace");
  for (const QDBusMessage& step : {managerCall(QStringLiteral("Reload")), enable, restart}) {
    const bool isDone = co_await call(step);
    if (self.isNull()) co_return false;
    if (isDone) continue;
    remove(id);
    co_return false;
  }
  co_return true;
}

void UserTimers::remove(const std::string& id) {
  if (!hasUnits(id)) return;
  removeUnits(id);
  auto stop = managerCall(QStringLiteral("StopUnit"));
  stop << timerOf(id) << QStringLiteral("replace");
  m_bus.asyncCall(stop);
  m_bus.asyncCall(managerCall(QStringLiteral("Reload")));
}

fs::path UserTimers::unit(const std::string& name) const {
  return m_unitDirectory / name;
}

bool UserTimers::writeUnits(const std::string& id, double at) const {
  std::error_code error;
  fs::create_directories(m_unitDirectory, error);
  if (error) return false;
  constexpr mode_t kReadable = 0644;
  if (replaceFile(unit(id + ".service"), serviceText(m_program, id), kReadable) &&
      replaceFile(unit(id + ".timer"), timerText(at), kReadable)) {
    return true;
  }
  removeUnits(id);
  return false;
}

void UserTimers::removeUnits(const std::string& id) const {
  std::error_code ignored;  // what is there no more needs no removing
  for (const std::string& name : {"timers.target.wants/" + id + ".timer", id + ".timer", id + ".service"}) {
    fs::remove(unit(name), ignored);
  }
}

bool UserTimers::hasUnits(const std::string& id) const {
  std::error_code ignored;
  return fs::exists(unit(id + ".timer"), ignored) || fs::exists(unit(id + ".service"), ignored);
}

QCoro::Task<bool> UserTimers::call(QDBusMessage message) {
  constexpr int kLimit = 10'000;  // ms
  const QDBusMessage answer = co_await m_bus.asyncCall(message, kLimit);
  co_return answer.type() == QDBusMessage::ReplyMessage;
}

fs::path userUnitDirectory() {
  const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  return fs::path(config.toStdString()) / "systemd" / "user";
}

}  // namespace varnel::platform
