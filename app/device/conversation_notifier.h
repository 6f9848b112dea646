// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>
#include <string_view>

#include "app/platform/defaults_store.h"
#include "app/platform/notification_centre.h"
#include "core/live/conversation_notifications.h"

namespace varnel::device {

/// Which kinds are announced: flags in the defaults store, each on when it is not there.
inline constexpr std::string_view kNotifyNeedsInputKey = "Varnel.NotifyNeedsInput";
inline constexpr std::string_view kNotifyFailedKey = "Varnel.NotifyFailed";
inline constexpr std::string_view kNotifyDoneKey = "Varnel.NotifyDone";

/// Keeps one notification for each conversation that wants to be looked at. Main thread.
class ConversationNotifier : public QObject {
  Q_OBJECT

 public:
  /// Both outlive the notifier.
  ConversationNotifier(platform::NotificationCentre& notifications, platform::DefaultsStore& store,
                       QObject* parent = nullptr);

  /// Call it whenever something in there may have changed, the settings included. What lasts shorter than a moment is
  /// not shown.
  void update(live::ConversationsNow now);
  /// Withdraws everything and forgets what was announced: the pairing is gone.
  void clear();

 private:
  void decide();
  void perform(const std::vector<live::NotificationAction>& actions);

  platform::NotificationCentre& m_notifications;
  platform::DefaultsStore& m_store;
  live::ConversationNotifications m_rules;
  live::ConversationsNow m_now;
  QTimer m_settling;
};

}  // namespace varnel::device
