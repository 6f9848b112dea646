// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/support/systemd_manager.h"

namespace varnel::support {
namespace {

const QString kService = QStringLiteral("org.freedesktop.systemd1");
const QString kPath = QStringLiteral("/org/freedesktop/systemd1");
const QString kConnection = QStringLiteral("systemd");
const QDBusObjectPath kJob(QStringLiteral("/org/freedesktop/systemd1/job/1"));

}  // namespace

SystemdManager::SystemdManager() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, kConnection)) {
  m_bus.registerObject(kPath, this, QDBusConnection::ExportAllSlots);
  m_bus.registerService(kService);
}

SystemdManager::~SystemdManager() {
  m_bus.unregisterObject(kPath);
  m_bus.unregisterService(kService);
  QDBusConnection::disconnectFromBus(kConnection);
}

bool SystemdManager::EnableUnitFiles(const QStringList& files, bool, bool) {
  note(QStringLiteral("EnableUnitFiles ") + files.join(QLatin1Char(' ')));
  return true;
}

QDBusObjectPath SystemdManager::RestartUnit(const QString& name, const QString&) {
  note(QStringLiteral("RestartUnit ") + name);
  return kJob;
}

QDBusObjectPath SystemdManager::StopUnit(const QString& name, const QString&) {
  note(QStringLiteral("StopUnit ") + name);
  return kJob;
}

void SystemdManager::note(const QString& call) {
  log << call;
  if (!refused.isEmpty() && call.startsWith(refused)) sendErrorReply(QDBusError::Failed, QStringLiteral("refused"));
}

}  // namespace varnel::support
