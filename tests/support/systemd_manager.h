// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusContext>
#include <QtDBus/QDBusObjectPath>

namespace varnel::support {

/// What answers for the user's systemd on the session bus, for as long as it lives. It runs nothing.
class SystemdManager : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.systemd1.Manager")

 public:
  SystemdManager();
  ~SystemdManager() override;

  QStringList log;  ///< the calls as they came, "METHOD ARGUMENT"
  QString refused;  ///< the method that fails

  // NOLINTBEGIN(readability-identifier-naming): the names are the interface's
 public slots:
  void Reload() { note(QStringLiteral("Reload")); }
  bool EnableUnitFiles(const QStringList& files, bool runtime, bool force);
  QDBusObjectPath RestartUnit(const QString& name, const QString& mode);
  QDBusObjectPath StopUnit(const QString& name, const QString& mode);
  // NOLINTEND(readability-identifier-naming)

 private:
  void note(const QString& call);

  QDBusConnection m_bus;
};

}  // namespace varnel::support
