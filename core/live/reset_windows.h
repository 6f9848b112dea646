// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/wire/usage.h"

/// When a usage limit is back, and how to say so.
namespace varnel::live {

/// The names of the reminders: two at most stand at any time.
inline constexpr std::array<std::string_view, 2> kResetIdentifiers{"varnel-usage-reset-primary",
                                                                   "varnel-usage-reset-secondary"};

struct ResetReminder {
  std::string id;
  std::string title;
  std::string body;
  double at = 0;  ///< seconds since 1970
  bool operator==(const ResetReminder&) const = default;
};

/// The primary window and then the secondary one, an absent one left out.
std::vector<wire::RateLimitWindow> windowsToWatch(const wire::UsageEnvelope& usage);

/// What is to come after `now`, in the order of the windows: as many as there are identifiers, the first future window
/// getting the first, whichever window it was.
std::vector<ResetReminder> resetReminders(const std::vector<wire::RateLimitWindow>& windows, double now);

}  // namespace varnel::live
