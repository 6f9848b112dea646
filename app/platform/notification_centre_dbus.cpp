// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/notification_centre_dbus.h"

#include <QCoroDBusPendingCall>
#include <QPointer>
#include <QtDBus/QDBusReply>
#include <QtDBus/QDBusServiceWatcher>
#include <algorithm>
#include <charconv>
#include <utility>

namespace varnel::platform {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
constexpr std::string_view kKey = "Varnel.PostedNotifications";
// Beside the server: "number ID" gives the number and, after a blank, the link.
constexpr std::string_view kServerKey = "server";
constexpr std::string_view kNumberPrefix = "number ";
constexpr uint kClosedByUser = 2;
const QString kDefaultAction = QStringLiteral("default");

QDBusMessage serverCall(const QString& method) {
  return QDBusMessage::createMethodCall(kService, kPath, kService, method);
}

QDBusMessage busCall(const QString& method) {
  return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                        QStringLiteral("org.freedesktop.DBus"), method);
}

uchar urgencyByte(Notification::Urgency urgency) {
  switch (urgency) {
    case Notification::Urgency::Low:
      return 0;
    case Notification::Urgency::Normal:
      return 1;
    case Notification::Urgency::Critical:
      return 2;
  }
  return 1;
}

QVariantMap hintsOf(const Notification& notification, bool outlivesSender) {
  QVariantMap hints{
      {QStringLiteral("urgency"), QVariant::fromValue<uchar>(urgencyByte(notification.urgency))},
      {QStringLiteral("resident"), notification.resident},
      {QStringLiteral("category"), QStringLiteral("im.received")},
  };
  if (!outlivesSender) hints.insert(QStringLiteral("desktop-entry"), QStringLiteral("org.varnel.Varnel"));
  if (notification.sound) {
    hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
  } else {
    hints.insert(QStringLiteral("suppress-sound"), true);
  }
  return hints;
}

std::uint32_t numberFrom(std::string_view text) {
  std::uint32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

QDBusMessage notifyCall(const Notification& notification, std::uint32_t replaces, bool hasMarkup, bool outlivesSender) {
  const QString body = QString::fromStdString(notification.body);
  QStringList actions;
  if (!notification.link.empty()) actions << kDefaultAction << QStringLiteral("Open");
  const bool stays = notification.resident || notification.urgency == Notification::Urgency::Critical;
  auto call = serverCall(QStringLiteral("Notify"));
  call << QStringLiteral("Varnel") << replaces << QStringLiteral("org.varnel.Varnel")
       << QString::fromStdString(notification.title) << (hasMarkup ? body.toHtmlEscaped() : body) << actions
       << hintsOf(notification, outlivesSender) << (stays ? 0 : -1);
  return call;
}

DBusNotificationCentre::DBusNotificationCentre(QDBusConnection bus, DefaultsStore& store, QObject* parent)
    : NotificationCentre(parent), m_bus(std::move(bus)), m_store(store) {
  m_bus.connect(kService, kPath, kService, QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(uint, QString)));
  m_bus.connect(kService, kPath, kService, QStringLiteral("NotificationClosed"), this,
                SLOT(onNotificationClosed(uint, uint)));
  auto* watcher = new QDBusServiceWatcher(kService, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
  connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &DBusNotificationCentre::onOwnerChanged);
  meetServer();
}

void DBusNotificationCentre::post(const std::string& id, const Notification& notification) {
  Entry& entry = m_entries[id];
  entry.content = notification;
  entry.link = notification.link;
  entry.isChanged = true;
  if (!m_server.empty() && !entry.isSending) send(id, entry);
}

void DBusNotificationCentre::remove(const std::string& id) {
  if (m_server.empty()) {
    m_entries[id].content.reset();  // an earlier run may have posted it: closed once that is known
    return;
  }
  const auto found = m_entries.find(id);
  if (found == m_entries.end()) return;
  if (found->second.isSending) {
    found->second.content.reset();  // closed as soon as its number is known
    return;
  }
  if (found->second.number != 0) close(found->second.number);
  m_entries.erase(found);
  keepNumbers();
}

std::vector<std::string> DBusNotificationCentre::posted() const {
  std::vector<std::string> ids;
  for (const auto& [id, entry] : m_entries) {
    if (entry.content || entry.number != 0) ids.push_back(id);
  }
  return ids;
}

void DBusNotificationCentre::onOwnerChanged(const QString&, const QString&, const QString& newOwner) {
  m_server.clear();
  m_capabilities.reset();
  emit capabilitiesChanged();
  if (!newOwner.isEmpty()) meetServer();
}

QCoro::Task<> DBusNotificationCentre::meetServer() {
  const QPointer<DBusNotificationCentre> self(this);
  const QDBusMessage answer = co_await m_bus.asyncCall(serverCall(QStringLiteral("GetCapabilities")));
  const QDBusReply<QStringList> abilities = answer;
  if (self.isNull() || !abilities.isValid()) co_return;
  auto ask = busCall(QStringLiteral("GetNameOwner"));
  ask << kService;
  const QDBusReply<QString> owner = co_await m_bus.asyncCall(ask);
  if (self.isNull() || !owner.isValid()) co_return;
  const QDBusReply<QString> bus = co_await m_bus.asyncCall(busCall(QStringLiteral("GetId")));
  if (self.isNull() || !bus.isValid() || owner.value() != answer.service()) co_return;

  const QStringList list = abilities.value();
  m_hasMarkup = list.contains(QLatin1String("body-markup"));
  m_capabilities = NotificationCapabilities{.body = list.contains(QLatin1String("body")),
                                            .actions = list.contains(QLatin1String("actions")),
                                            .persistence = list.contains(QLatin1String("persistence"))};
  adopt((bus.value() + QLatin1Char(' ') + owner.value()).toStdString());
  emit capabilitiesChanged();
}

/// Takes up what this very server shows of ours, closes what was removed meanwhile, and has the rest shown.
void DBusNotificationCentre::adopt(const std::string& server) {
  if (server == m_server) return;
  m_server = server;
  const Dictionary kept = m_store.get<Dictionary>(kKey).value_or(Dictionary());
  const auto keptServer = kept.find(kServerKey);
  const bool isSame = keptServer != kept.end() && keptServer->second == server;
  std::vector<std::string> removed;
  for (auto& [id, entry] : m_entries) {
    entry.number = 0;
    if (!entry.content) removed.push_back(id);
  }
  for (const auto& [key, text] : kept) {
    if (!isSame || !key.starts_with(kNumberPrefix)) continue;
    Entry& entry = m_entries[key.substr(kNumberPrefix.size())];
    entry.number = numberFrom(text);
    const auto blank = text.find(' ');
    if (!entry.content && blank != std::string::npos) entry.link = text.substr(blank + 1);
  }
  for (const std::string& id : removed) remove(id);
  for (auto& [id, entry] : m_entries) {
    if (entry.content && !entry.isSending) send(id, entry);
  }
}

void DBusNotificationCentre::send(const std::string& id, Entry& entry) {
  entry.isSending = true;
  entry.isChanged = false;
  finishSending(id, m_bus.asyncCall(notifyCall(*entry.content, entry.number, m_hasMarkup, false)));
}

QCoro::Task<> DBusNotificationCentre::finishSending(std::string id, QDBusPendingCall call) {
  const QPointer<DBusNotificationCentre> self(this);
  const QDBusReply<uint> reply = co_await call;
  if (self.isNull()) co_return;
  const auto found = m_entries.find(id);
  if (found == m_entries.end()) co_return;
  Entry& entry = found->second;
  entry.isSending = false;
  const bool isNew = reply.isValid() && entry.number != reply.value();
  if (isNew) entry.number = reply.value();
  if (!entry.content) {
    remove(id);
  } else if (entry.isChanged && !m_server.empty()) {
    send(id, entry);
  }
  if (isNew) keepNumbers();
}

void DBusNotificationCentre::onActionInvoked(uint number, const QString& action) {
  const auto found = find(number);
  if (found == m_entries.end() || found->second.link.empty() || action != kDefaultAction) return;
  emit opened(std::string(found->second.link));
}

void DBusNotificationCentre::onNotificationClosed(uint number, uint reason) {
  const auto found = find(number);
  if (found == m_entries.end() || found->second.isSending) return;
  const std::string id = found->first;
  m_entries.erase(found);
  keepNumbers();
  if (reason == kClosedByUser) emit dismissed(id);
}

void DBusNotificationCentre::close(std::uint32_t number) {
  auto call = serverCall(QStringLiteral("CloseNotification"));
  call << number;
  m_bus.asyncCall(call);
}

void DBusNotificationCentre::keepNumbers() {
  Dictionary kept{{std::string(kServerKey), m_server}};
  for (const auto& [id, entry] : m_entries) {
    if (entry.number == 0) continue;
    kept.emplace(std::string(kNumberPrefix) + id, std::to_string(entry.number) + " " + entry.link);
  }
  // Without it the next run cannot take away what this one showed; there is no one to tell.
  static_cast<void>(m_store.set(kKey, kept));
}

DBusNotificationCentre::Entries::iterator DBusNotificationCentre::find(std::uint32_t number) {
  return std::ranges::find_if(m_entries,
                              [&](const auto& entry) { return number != 0 && entry.second.number == number; });
}

}  // namespace varnel::platform
