// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/support/notification_server.h"

namespace varnel::support {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
constexpr uint kDismissed = 2;
constexpr uint kClosedByCall = 3;

QString freshName() {
  static int count = 0;
  return QStringLiteral("notification server %1").arg(++count);
}

}  // namespace

NotificationServer::NotificationServer(QStringList capabilities)
    : m_capabilities(std::move(capabilities)),
      m_name(freshName()),
      m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name)) {
  m_bus.registerObject(kPath, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
  m_bus.registerService(kService);
}

NotificationServer::~NotificationServer() {
  m_bus.unregisterObject(kPath);
  m_bus.unregisterService(kService);
  QDBusConnection::disconnectFromBus(m_name);
}

// NOLINTNEXTLINE(readability-function-size): the parameters are the interface's
uint NotificationServer::Notify(const QString&, uint replaces, const QString&, const QString& title,
                                const QString& body, const QStringList& actions, const QVariantMap& hints,
                                int timeout) {
  const uint number = replaces != 0 ? replaces : ++m_last;
  log << QStringLiteral("%1 %2 %3")
             .arg(replaces != 0 ? QStringLiteral("replace") : QStringLiteral("show"))
             .arg(number)
             .arg(title);
  shown[number] = {.title = title, .body = body, .actions = actions, .hints = hints, .timeout = timeout};
  return number;
}

void NotificationServer::CloseNotification(uint number) {
  log << QStringLiteral("close %1").arg(number);
  shown.erase(number);
  emit NotificationClosed(number, kClosedByCall);
}

void NotificationServer::touch(uint number, const QString& action) {
  emit ActionInvoked(number, action);
}

void NotificationServer::dismiss(uint number) {
  shown.erase(number);
  emit NotificationClosed(number, kDismissed);
}

}  // namespace varnel::support
