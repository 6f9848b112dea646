// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "app/platform/activity_centre.h"
#include "app/platform/haptics.h"
#include "core/live/live_activity.h"
#include "core/wire/event.h"

namespace varnel::device {

/// Shows the turn of the tracked conversation where the device shows such things: at most one turn at a time, which
/// stays with its last state until another takes its place or it is cleared. Main thread; no call waits or fails.
class LiveActivityManager {
 public:
  /// `now` gives seconds since 1970.
  LiveActivityManager(std::shared_ptr<platform::ActivityCentre> centre, std::shared_ptr<platform::Haptics> haptics,
                      std::function<double()> now);

  /// Takes up the latest of the activities that an earlier run left behind.
  void restore();
  /// To be called with the events of the stream, one at a time and in their order.
  void apply(const wire::LiveEvent& event);
  /// Ends every activity, current or not.
  void clear();

  [[nodiscard]] const std::optional<platform::Activity>& current() const { return m_current; }

 private:
  void perform(const live::ActivityAction& action);

  std::shared_ptr<platform::ActivityCentre> m_centre;
  std::shared_ptr<platform::Haptics> m_haptics;
  std::function<double()> m_now;
  std::optional<platform::Activity> m_current;
};

}  // namespace varnel::device
