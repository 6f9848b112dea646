// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/reminder_centre_system.h"

#include <QCoroDBusPendingCall>
#include <QPointer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "app/platform/notification_centre_dbus.h"
#include "core/json/text.h"

namespace varnel::platform {
namespace {

using namespace std::chrono_literals;
using json::JSONValue;

constexpr std::string_view kKey = "Varnel.Reminders";
constexpr double kForgivenSeconds = 3600;
constexpr auto kSweepDelay = 500ms;
/// A timer does not count while the device sleeps, nor when the clock is set.
constexpr auto kLongestWait = 10min;

bool areOn(const DefaultsStore& store) {
  return store.get<bool>(kRemindersKey).value_or(true);
}

Notification notificationOf(const Reminder& reminder) {
  return {.title = reminder.title, .body = reminder.body, .sound = true};
}

std::string textOf(const Reminder& reminder, bool isSystems) {
  // Titles and bodies are our own texts, so that this cannot fail.
  return json::write(
             JSONValue::Object{
                 {"title", reminder.title}, {"body", reminder.body}, {"at", reminder.at}, {"isSystems", isSystems}})
      .value_or("");
}

struct Kept {
  Reminder reminder;
  bool isSystems = false;
};

std::optional<Kept> keptFrom(const std::string& id, const std::string& text) {
  const auto value = json::parse(text);
  if (!value) return std::nullopt;
  const JSONValue* title = value->member("title");
  const JSONValue* body = value->member("body");
  const JSONValue* at = value->member("at");
  const JSONValue* isSystems = value->member("isSystems");
  if (title == nullptr || body == nullptr || at == nullptr || isSystems == nullptr) return std::nullopt;
  if (title->string() == nullptr || body->string() == nullptr || at->number() == nullptr ||
      isSystems->boolean() == nullptr) {
    return std::nullopt;
  }
  return Kept{.reminder = {.id = id, .title = *title->string(), .body = *body->string(), .at = *at->number()},
              .isSystems = *isSystems->boolean()};
}

QDBusMessage serverQuestion() {
  return QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("GetCapabilities"));
}

}  // namespace

SystemReminderCentre::SystemReminderCentre(Surroundings surroundings, QObject* parent)
    : QObject(parent),
      m_surroundings(std::move(surroundings)),
      m_timers(m_surroundings.bus, m_surroundings.unitDirectory, m_surroundings.program) {
  m_due.setSingleShot(true);
  m_sweep.setSingleShot(true);
  connect(&m_due, &QTimer::timeout, this, &SystemReminderCentre::check);
  connect(&m_sweep, &QTimer::timeout, this, &SystemReminderCentre::sweep);
  load();
  check();
}

SystemReminderCentre::~SystemReminderCentre() {
  sweep();
}

void SystemReminderCentre::remove(const std::vector<std::string>& ids) {
  for (const std::string& id : ids) {
    if (m_pending.contains(id)) m_removed.insert(id);
  }
  if (!m_removed.empty()) m_sweep.start(kSweepDelay);
}

QCoro::Task<ReminderAuthorisation> SystemReminderCentre::authorisation() {
  const bool isGranted = co_await requestAuthorisation();
  co_return isGranted ? ReminderAuthorisation::Authorised : ReminderAuthorisation::Denied;
}

QCoro::Task<bool> SystemReminderCentre::requestAuthorisation() {
  if (!areOn(m_surroundings.store)) co_return false;
  constexpr int kLimit = 5'000;  // ms
  const QDBusMessage answer = co_await m_surroundings.bus.asyncCall(serverQuestion(), kLimit);
  co_return answer.type() == QDBusMessage::ReplyMessage;
}

QCoro::Task<bool> SystemReminderCentre::add(Reminder reminder) {
  if (!std::isfinite(reminder.at)) co_return false;
  const std::string id = reminder.id;
  m_removed.erase(id);
  const auto known = m_pending.find(id);
  if (known != m_pending.end() && known->second.reminder == reminder) co_return true;

  const QPointer<SystemReminderCentre> self(this);
  m_pending.insert_or_assign(id, Pending{.reminder = reminder});
  keep();
  const bool isSystems = co_await m_timers.start(id, reminder.at);
  if (self.isNull()) co_return false;
  const auto pending = m_pending.find(id);
  if (pending == m_pending.end() || pending->second.reminder != reminder) co_return false;  // removed or replaced since
  pending->second.isSystems = isSystems;
  keep();
  arm();
  co_return true;
}

void SystemReminderCentre::check() {
  const double now = m_surroundings.now();
  std::vector<Reminder> due;
  for (const auto& [id, pending] : m_pending) {
    if (!pending.isSystems && !m_removed.contains(id) && pending.reminder.at <= now) due.push_back(pending.reminder);
  }
  for (const Reminder& reminder : due) {
    m_pending.erase(reminder.id);
    const bool isForgiven = now - reminder.at < kForgivenSeconds;
    if (isForgiven && areOn(m_surroundings.store)) {
      m_surroundings.notifications.post(reminder.id, notificationOf(reminder));
    }
  }
  if (!due.empty()) keep();
  arm();
}

void SystemReminderCentre::load() {
  const Dictionary kept = m_surroundings.store.get<Dictionary>(kKey).value_or(Dictionary());
  for (const auto& [id, text] : kept) {
    auto pending = keptFrom(id, text);
    if (!pending) continue;
    // The manager shows its own also when late; a record that is left over from that is of no use.
    if (pending->isSystems && pending->reminder.at <= m_surroundings.now() - kForgivenSeconds) {
      m_removed.insert(id);
    }
    m_pending.emplace(id, Pending{.reminder = std::move(pending->reminder), .isSystems = pending->isSystems});
  }
  if (!m_removed.empty()) m_sweep.start(kSweepDelay);
}

void SystemReminderCentre::keep() {
  Dictionary kept;
  for (const auto& [id, pending] : m_pending) kept.emplace(id, textOf(pending.reminder, pending.isSystems));
  // On failure the reminder still comes while the application runs; there is no one to tell.
  static_cast<void>(m_surroundings.store.set(kKey, kept));
}

void SystemReminderCentre::sweep() {
  m_sweep.stop();
  if (m_removed.empty()) return;
  for (const std::string& id : std::exchange(m_removed, {})) {
    m_pending.erase(id);
    m_timers.remove(id);
  }
  keep();
  arm();
}

/// Waits for the next of those that no manager shows.
void SystemReminderCentre::arm() {
  std::optional<double> next;
  for (const auto& [id, pending] : m_pending) {
    if (!pending.isSystems) next = std::min(next.value_or(pending.reminder.at), pending.reminder.at);
  }
  m_due.stop();
  if (!next) return;
  const double seconds =
      std::clamp(*next - m_surroundings.now(), 0.0, std::chrono::duration<double>(kLongestWait).count());
  m_due.start(std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds)));
}

bool showReminder(const QDBusConnection& bus, DefaultsStore& store, const std::string& id) {
  Dictionary kept = store.get<Dictionary>(kKey).value_or(Dictionary());
  const auto found = kept.find(id);
  if (found == kept.end() || !areOn(store)) return true;
  if (const auto pending = keptFrom(id, found->second)) {
    const auto call = notifyCall(notificationOf(pending->reminder), 0, true, true);
    if (bus.call(call).type() != QDBusMessage::ReplyMessage) return false;
  }
  kept.erase(found);
  // A record that stays is overlooked once it is an hour old.
  static_cast<void>(store.set(kKey, kept));
  return true;
}

}  // namespace varnel::platform
