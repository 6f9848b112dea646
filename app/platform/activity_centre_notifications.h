// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "app/platform/activity_centre.h"
#include "app/platform/defaults_store.h"
#include "app/platform/notification_centre.h"

namespace varnel::platform {

/// Whether live activities may be shown: a flag in the defaults store, on when it is not there.
inline constexpr std::string_view kLiveActivitiesKey = "Varnel.LiveActivities";

/// Live activities as resident notifications, each replaced in place. Enabled while the user has not switched them off
/// and the notification server shows texts. One that its user puts away is gone. Ids grow with time.
///
/// What exists stands in the defaults store, so that the next run finds it; new content gets there a few seconds
/// later. Main thread.
class NotificationActivityCentre : public QObject, public ActivityCentre {
  Q_OBJECT

 public:
  /// Both outlive the centre; `now` gives seconds since 1970.
  NotificationActivityCentre(NotificationCentre& notifications, DefaultsStore& store, std::function<double()> now,
                             QObject* parent = nullptr);
  ~NotificationActivityCentre() override;

  [[nodiscard]] std::vector<Activity> activities() const override;
  [[nodiscard]] bool areActivitiesEnabled() const override;
  std::optional<Activity> request(const wire::CodexTurnAttributes& attributes,
                                  const Activity::Content& content) override;
  void update(const std::string& id, const Activity::Content& content) override;
  void end(const std::string& id, const Activity::Content& finalContent) override;

  /// Marks what has become outdated. Call it when the device wakes up.
  void check();

 private:
  struct Entry {
    Activity activity;
    bool isOutdated = false;  ///< as shown
  };

  void load();
  void keep();
  void forget(const std::string& id);
  void show(Entry& entry);
  [[nodiscard]] bool isOutdated(const Activity& activity) const;
  std::string freshId();

  NotificationCentre& m_notifications;
  DefaultsStore& m_store;
  std::function<double()> m_now;
  std::map<std::string, Entry, std::less<>> m_entries;
  QTimer m_keep;
  QTimer m_outdating;
};

}  // namespace varnel::platform
