// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/platform/reminder_centre.h"
#include "core/wire/usage.h"

namespace varnel::device {

/// Has the moments announced at which a usage limit is back. Keeps nothing itself: each call replaces what the earlier
/// ones asked for, and nothing it meets is a failure to its caller. Main thread; calls may overlap, and may outlive
/// the notifier.
class UsageResetNotifier {
 public:
  /// `now` gives seconds since 1970.
  UsageResetNotifier(std::shared_ptr<platform::ReminderCentre> centre, std::function<double()> now);

  QCoro::Task<> schedule(std::optional<wire::RateLimitWindow> window);
  QCoro::Task<> schedule(const std::vector<wire::RateLimitWindow>& windows);

 private:
  std::shared_ptr<platform::ReminderCentre> m_centre;
  std::function<double()> m_now;
};

}  // namespace varnel::device
