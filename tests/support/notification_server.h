// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusContext>
#include <map>

namespace varnel::support {

/// A notification server on the session bus, on a connection of its own, for as long as it lives.
class NotificationServer : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

 public:
  struct Shown {
    QString title;
    QString body;
    QStringList actions;
    QVariantMap hints;
    int timeout = 0;
  };

  explicit NotificationServer(QStringList capabilities = {QStringLiteral("body"), QStringLiteral("actions"),
                                                          QStringLiteral("persistence")});
  ~NotificationServer() override;

  std::map<uint, Shown> shown;
  QStringList log;  ///< "show NUMBER TITLE", "replace NUMBER TITLE", "close NUMBER"

  /// What a person does.
  void touch(uint number, const QString& action);
  void dismiss(uint number);

  // NOLINTBEGIN(readability-identifier-naming): the names are the interface's
 public slots:
  QStringList GetCapabilities() { return m_capabilities; }
  // NOLINTNEXTLINE(readability-function-size): so are the parameters
  uint Notify(const QString& app, uint replaces, const QString& icon, const QString& title, const QString& body,
              const QStringList& actions, const QVariantMap& hints, int timeout);
  void CloseNotification(uint number);

 signals:
  void ActionInvoked(uint number, const QString& action);
  void NotificationClosed(uint number, uint reason);
  // NOLINTEND(readability-identifier-naming)

 private:
  QStringList m_capabilities;
  uint m_last = 40;
  QString m_name;
  QDBusConnection m_bus;
};

}  // namespace varnel::support
