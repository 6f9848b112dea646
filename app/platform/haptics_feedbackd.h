// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtDBus/QDBusConnection>

#include "app/platform/haptics.h"

namespace varnel::platform {

/// Signals through feedbackd, which phones have; a system without it stays still.
class FeedbackdHaptics : public Haptics {
 public:
  explicit FeedbackdHaptics(QDBusConnection bus);

  void notificationOccurred(HapticSignal signal) override;

 private:
  QDBusConnection m_bus;
};

}  // namespace varnel::platform
