// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/reset_windows.h"

namespace varnel::live {
namespace {

constexpr std::int64_t kFiveHours = 300;
constexpr std::int64_t kWeek = 10080;

std::string_view kindOf(const wire::RateLimitWindow& window) {
  if (window.windowDurationMins == kFiveHours) return "5-hour";
  if (window.windowDurationMins == kWeek) return "weekly";
  return "usage";
}

}  // namespace

std::vector<wire::RateLimitWindow> windowsToWatch(const wire::UsageEnvelope& usage) {
  std::vector<wire::RateLimitWindow> windows;
  if (usage.primary) windows.push_back(*usage.primary);
  if (usage.secondary) windows.push_back(*usage.secondary);
  return windows;
}

std::vector<ResetReminder> resetReminders(const std::vector<wire::RateLimitWindow>& windows, double now) {
  std::vector<ResetReminder> reminders;
  for (const wire::RateLimitWindow& window : windows) {
    if (reminders.size() == kResetIdentifiers.size()) break;
    if (!window.resetsAt || !(*window.resetsAt > now)) continue;
    reminders.push_back({.id = std::string(kResetIdentifiers.at(reminders.size())),
                         .title = "Codex usage reset",
                         .body = "Your Codex " + std::string(kindOf(window)) + " limit is back to 100%.",
                         .at = *window.resetsAt});
  }
  return reminders;
}

}  // namespace varnel::live
