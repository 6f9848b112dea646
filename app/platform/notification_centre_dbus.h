// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/platform/defaults_store.h"
#include "app/platform/notification_centre.h"

namespace varnel::platform {

/// Notifications on the desktop's own server (org.freedesktop.Notifications), which is started by the first look if
/// the bus can. A server numbers what it shows; the numbers are kept in the defaults store, together with which server
/// on which bus gave them, since another one would take them for somebody else's. What stands is shown again when the
/// server is replaced by another.
class DBusNotificationCentre : public NotificationCentre {
  Q_OBJECT

 public:
  /// `store` outlives the centre.
  DBusNotificationCentre(QDBusConnection bus, DefaultsStore& store, QObject* parent = nullptr);

  void post(const std::string& id, const Notification& notification) override;
  void remove(const std::string& id) override;
  [[nodiscard]] std::optional<NotificationCapabilities> capabilities() const override { return m_capabilities; }
  [[nodiscard]] std::vector<std::string> posted() const override;

 private slots:
  void onActionInvoked(uint number, const QString& action);
  void onNotificationClosed(uint number, uint reason);
  void onOwnerChanged(const QString& service, const QString& oldOwner, const QString& newOwner);

 private:
  struct Entry {
    std::optional<Notification> content;  ///< nothing for one of an earlier run
    std::string link;                     ///< the content's
    std::uint32_t number = 0;             ///< the server's; 0 while it has none
    bool isSending = false;               ///< the number of what was sent last is not known yet
    bool isChanged = false;               ///< `content` is not what was sent last
  };
  using Entries = std::map<std::string, Entry, std::less<>>;

  QCoro::Task<> meetServer();
  void adopt(const std::string& server);
  void send(const std::string& id, Entry& entry);
  QCoro::Task<> finishSending(std::string id, QDBusPendingCall call);
  void close(std::uint32_t number);
  void keepNumbers();
  Entries::iterator find(std::uint32_t number);

  QDBusConnection m_bus;
  DefaultsStore& m_store;
  Entries m_entries;
  std::string m_server;  ///< empty while there is none
  bool m_hasMarkup = false;
  std::optional<NotificationCapabilities> m_capabilities;
};

/// The call that shows a notification in the place of number `replaces` (0 for none). A server may take away what it
/// shows when the sender leaves the bus; with `outlivesSender` it is told less of who that is, so that it does not.
QDBusMessage notifyCall(const Notification& notification, std::uint32_t replaces, bool hasMarkup, bool outlivesSender);

}  // namespace varnel::platform
