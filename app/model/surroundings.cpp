// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/model/surroundings.h"

#include <QCoreApplication>
#include <QtDBus/QDBusConnection>
#include <memory>
#include <string>

#include "app/client/async.h"
#include "app/device/conversation_notifier.h"
#include "app/device/keychain_store.h"
#include "app/device/live_activity_manager.h"
#include "app/device/usage_reset_notifier.h"
#include "app/model/app_model.h"
#include "app/platform/activity_centre_notifications.h"
#include "app/platform/connectivity_watch_system.h"
#include "app/platform/defaults_store_file.h"
#include "app/platform/defaults_store_memory.h"
#include "app/platform/device_name.h"
#include "app/platform/haptics_feedbackd.h"
#include "app/platform/notification_centre_dbus.h"
#include "app/platform/reminder_centre_system.h"
#include "core/live/reset_windows.h"

namespace varnel::model {
namespace {

double secondsSince1970() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

void warn(const std::string& sentence) {
  qWarning("%s", sentence.c_str());
}

CredentialStore keychain(const std::filesystem::path& directory) {
  const auto store = std::make_shared<device::KeychainStore>(directory);
  return {
      .load = [store] { return store->load().value_or(std::nullopt); },
      .save = [store](const wire::PairingCredentials& credentials) -> std::optional<QString> {
        const auto saved = store->save(credentials);
        if (saved) return std::nullopt;
        return QString::fromStdString(device::message(saved.error()));
      },
      .remove = [store] { store->remove(); },
  };
}

CredentialStore noKeychain() {
  return {.load = [] { return std::nullopt; }, .save = [](const auto&) { return std::nullopt; }, .remove = [] {}};
}

std::shared_ptr<platform::DefaultsStore> makeDefaults(const std::filesystem::path& directory, Lasting lasting) {
  if (lasting == Lasting::ThisRun) return std::make_shared<platform::MemoryDefaultsStore>();
  return std::make_shared<platform::DefaultsFileStore>(directory / "defaults", warn);
}

/// What shows things on this device and tells of its own accord, each part before those that use it.
struct Device {
  explicit Device(std::shared_ptr<platform::DefaultsStore> store);

  std::shared_ptr<platform::DefaultsStore> defaults;
  platform::DBusNotificationCentre notifications;
  platform::SystemConnectivityWatch watch;
  std::shared_ptr<platform::NotificationActivityCentre> activityCentre;
  device::LiveActivityManager activities;
  device::ConversationNotifier conversations;
};

Device::Device(std::shared_ptr<platform::DefaultsStore> store)
    : defaults(std::move(store)),
      notifications(QDBusConnection::sessionBus(), *defaults),
      watch(QDBusConnection::systemBus()),
      activityCentre(
          std::make_shared<platform::NotificationActivityCentre>(notifications, *defaults, secondsSince1970)),
      activities(activityCentre, std::make_shared<platform::FeedbackdHaptics>(QDBusConnection::sessionBus()),
                 secondsSince1970),
      conversations(notifications, *defaults) {
  QObject::connect(&watch, &platform::ConnectivityWatch::resumed, activityCentre.get(),
                   [this] { activityCentre->check(); });
}

client::Task<void> apply(std::shared_ptr<Device> device, wire::LiveEvent event) {
  device->activities.apply(event);
  co_return;
}

client::Task<void> clear(std::shared_ptr<Device> device) {
  device->activities.clear();
  co_return;
}

void attach(const Device& device, AppModel& model) {
  using platform::ConnectivityWatch;
  QObject::connect(&device.watch, &ConnectivityWatch::networkChanged, &model, &AppModel::pathChanged);
  QObject::connect(&device.watch, &ConnectivityWatch::resumed, &model, &AppModel::pathChanged);
  QObject::connect(&device.notifications, &platform::NotificationCentre::opened, &model,
                   [&model](const std::string& link) { model.handle(link); });
}

/// Reminders, and what they stand on.
struct Reminders {
  explicit Reminders(const std::shared_ptr<Device>& onDevice);

  std::shared_ptr<Device> device;
  std::shared_ptr<platform::SystemReminderCentre> centre;
  device::UsageResetNotifier notifier;
};

Reminders::Reminders(const std::shared_ptr<Device>& onDevice)
    : device(onDevice),
      centre(std::make_shared<platform::SystemReminderCentre>(
          platform::SystemReminderCentre::Surroundings{.store = *device->defaults,
                                                       .notifications = device->notifications,
                                                       .bus = QDBusConnection::sessionBus(),
                                                       .unitDirectory = platform::userUnitDirectory(),
                                                       .program = QCoreApplication::applicationFilePath().toStdString(),
                                                       .now = secondsSince1970})),
      notifier(centre, secondsSince1970) {
  QObject::connect(&device->watch, &platform::ConnectivityWatch::resumed, centre.get(), [this] { centre->check(); });
}

client::Task<void> schedule(std::shared_ptr<Reminders> reminders, std::vector<wire::RateLimitWindow> windows) {
  co_await reminders->notifier.schedule(windows);
}

UsageResetNotifier remindersOn(const std::shared_ptr<Device>& device) {
  const auto reminders = std::make_shared<Reminders>(device);
  return {
      .schedule = [reminders](auto windows) { return schedule(reminders, std::move(windows)); },
      .removePending =
          [reminders] { reminders->centre->remove({live::kResetIdentifiers.begin(), live::kResetIdentifiers.end()}); }};
}

}  // namespace

Surroundings systemSurroundings(const std::filesystem::path& directory, Lasting lasting) {
  const bool kept = lasting == Lasting::Kept;
  const std::shared_ptr<Device> device(new Device(makeDefaults(directory, lasting)), [kept](Device* leaving) {
    if (!kept) {
      leaving->activities.clear();
      leaving->conversations.clear();
    }
    delete leaving;
  });
  return {
      .credentialStore = kept ? keychain(directory) : noKeychain(),
      .clock = {.now = secondsSince1970, .sleep = client::sleepFor},
      .deviceName = platform::deviceName,
      .defaults = device->defaults,
      .liveActivities = {.restore = [device] { device->activities.restore(); },
                         .apply = [device](auto event) { return apply(device, std::move(event)); },
                         .clear = [device] { return clear(device); },
                         .areEnabled = [device] { return device->activityCentre->areActivitiesEnabled(); }},
      .usageResetNotifier = kept ? remindersOn(device) : UsageResetNotifier(),
      .conversationNotifier = {.update = [device](auto now) { device->conversations.update(std::move(now)); },
                               .clear = [device] { device->conversations.clear(); }},
      .attach = [device](AppModel& model) { attach(*device, model); },
  };
}

}  // namespace varnel::model
