// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/haptics_feedbackd.h"

#include <QString>
#include <QVariantMap>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCall>
#include <utility>

namespace varnel::platform {
namespace {

/// Names of the sound naming rules for which the daemon's own theme has something to feel.
QString eventOf(HapticSignal signal) {
  switch (signal) {
    case HapticSignal::Success:
      return QStringLiteral("timeout-completed");
    case HapticSignal::Warning:
      return QStringLiteral("message-new-instant");
    case HapticSignal::Error:
      return QStringLiteral("bell-terminal");
  }
  return {};
}

}  // namespace

FeedbackdHaptics::FeedbackdHaptics(QDBusConnection bus) : m_bus(std::move(bus)) {}

void FeedbackdHaptics::notificationOccurred(HapticSignal signal) {
  constexpr int kOnce = -1;
  auto call =
      QDBusMessage::createMethodCall(QStringLiteral("org.sigxcpu.Feedback"), QStringLiteral("/org/sigxcpu/Feedback"),
                                     QStringLiteral("org.sigxcpu.Feedback"), QStringLiteral("TriggerFeedback"));
  call << QStringLiteral("org.varnel.Varnel") << eventOf(signal) << QVariantMap() << kOnce;
  m_bus.asyncCall(call);
}

}  // namespace varnel::platform
