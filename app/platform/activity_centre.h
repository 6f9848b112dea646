// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/wire/activity.h"

namespace varnel::platform {

/// A turn that the lock screen shows.
struct Activity {
  struct Content {
    wire::CodexTurnAttributes::ContentState state;
    std::optional<double> staleDate;  ///< seconds since 1970 from when on it is shown as outdated
    bool operator==(const Content&) const = default;
  };

  std::string id;  ///< given by the centre
  wire::CodexTurnAttributes attributes;
  Content content;

  bool operator==(const Activity&) const = default;
};

/// Live activities: each shows one turn, changes in place, and outlives the run that began it. Main thread; no call
/// waits.
class ActivityCentre {
 public:
  virtual ~ActivityCentre() = default;

  /// All that exist on this device, in no particular order.
  [[nodiscard]] virtual std::vector<Activity> activities() const = 0;
  [[nodiscard]] virtual bool areActivitiesEnabled() const = 0;
  /// Nothing when it cannot be shown.
  virtual std::optional<Activity> request(const wire::CodexTurnAttributes& attributes,
                                          const Activity::Content& content) = 0;
  /// Shows new content in place. An activity that is gone stays gone.
  virtual void update(const std::string& id, const Activity::Content& content) = 0;
  /// Takes the activity off the screen at once.
  virtual void end(const std::string& id, const Activity::Content& finalContent) = 0;
};

}  // namespace varnel::platform
