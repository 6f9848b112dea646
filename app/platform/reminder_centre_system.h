// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>
#include <QtDBus/QDBusConnection>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "app/platform/defaults_store.h"
#include "app/platform/notification_centre.h"
#include "app/platform/reminder_centre.h"
#include "app/platform/user_timers.h"

namespace varnel::platform {

/// Whether reminders may be shown: a flag in the defaults store, on when it is not there.
inline constexpr std::string_view kRemindersKey = "Varnel.UsageResetReminders";

/// Reminders that the user's systemd shows, whether or not the application runs. Where no such manager answers, the
/// application itself shows them at the moment, or at its next start if that comes less than an hour later. Authorised
/// are they while the user has not switched them off and a notification server answers. Main thread.
///
/// What is pending stands in the defaults store. A removal is carried out a moment later, so that adding the same
/// reminder again right after, as a refresh does, touches neither the disk nor the manager.
class SystemReminderCentre : public QObject, public ReminderCentre {
  Q_OBJECT

 public:
  /// What it works with, all of which outlives it.
  struct Surroundings {
    DefaultsStore& store;
    NotificationCentre& notifications;
    QDBusConnection bus;
    std::filesystem::path unitDirectory;
    std::string program;          ///< the path of the application
    std::function<double()> now;  ///< seconds since 1970
  };
  explicit SystemReminderCentre(Surroundings surroundings, QObject* parent = nullptr);
  /// Carries out the removals that are still to come.
  ~SystemReminderCentre() override;

  void remove(const std::vector<std::string>& ids) override;
  QCoro::Task<ReminderAuthorisation> authorisation() override;
  QCoro::Task<bool> requestAuthorisation() override;
  QCoro::Task<bool> add(Reminder reminder) override;

  /// Shows what is due. Call it when the device wakes up.
  void check();

 private:
  struct Pending {
    Reminder reminder;
    bool isSystems = false;  ///< the manager shows it
  };

  void load();
  void keep();
  void sweep();
  void arm();

  Surroundings m_surroundings;
  UserTimers m_timers;
  std::map<std::string, Pending, std::less<>> m_pending;
  std::set<std::string, std::less<>> m_removed;  ///< pending ids whose removal is still to be carried out
  QTimer m_due;
  QTimer m_sweep;
};

/// Shows the reminder of that id now and forgets it: what `--notify` does, in a program of its own that needs no event
/// loop. Nothing to show is no failure; no notification server is one.
bool showReminder(const QDBusConnection& bus, DefaultsStore& store, const std::string& id);

}  // namespace varnel::platform
