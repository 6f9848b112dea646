// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantList>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnection>

namespace varnel::platform {

/// This application as the desktop knows it: one instance on a session bus, which is activated and given links to open
/// through org.freedesktop.Application, by the desktop or by a second instance. Main thread.
class DesktopApplication : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  enum class Instance {
    First,        ///< from now on this instance is asked
    Second,       ///< another one runs; it has been asked to open the links, or to show itself when there are none
    Unreachable,  ///< there is no bus, so nobody can ask
  };

  /// `id` is the application's reverse-DNS name, which is its name on the bus and, with slashes, its path.
  DesktopApplication(QDBusConnection bus, QString id, QObject* parent = nullptr);

  /// Blocks for up to three seconds where another instance runs.
  Instance join(const QStringList& links);

  // What the bus calls, under the names of that interface.
 public slots:
  // NOLINTBEGIN(readability-identifier-naming)
  Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
  Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
  Q_SCRIPTABLE void ActivateAction(const QString& actionName, const QVariantList& parameter,
                                   const QVariantMap& platformData);
  // NOLINTEND(readability-identifier-naming)

 signals:
  void activated();
  void linkOpened(const QString& link);

 private:
  [[nodiscard]] bool tellFirst(const QStringList& links);

  QDBusConnection m_bus;
  QString m_id;
  QString m_path;
};

}  // namespace varnel::platform
