// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/usage_reset_notifier.h"

#include <string>
#include <utility>

#include "core/live/reset_windows.h"

namespace varnel::device {
namespace {

using platform::ReminderAuthorisation;
using platform::ReminderCentre;

QCoro::Task<bool> isAuthorised(std::shared_ptr<ReminderCentre> centre) {
  const auto authorisation = co_await centre->authorisation();
  if (authorisation != ReminderAuthorisation::NotDetermined)
    co_return authorisation == ReminderAuthorisation::Authorised;
  const bool isGranted = co_await centre->requestAuthorisation();
  co_return isGranted;
}

QCoro::Task<> replaceReminders(std::shared_ptr<ReminderCentre> centre, std::vector<live::ResetReminder> reminders) {
  centre->remove({live::kResetIdentifiers.begin(), live::kResetIdentifiers.end()});
  if (reminders.empty()) co_return;
  const bool isGranted = co_await isAuthorised(centre);
  if (!isGranted) co_return;
  for (live::ResetReminder& each : reminders) {
    platform::Reminder reminder{
        .id = std::move(each.id), .title = std::move(each.title), .body = std::move(each.body), .at = each.at};
    co_await centre->add(std::move(reminder));  // one that is not taken is passed over
  }
}

}  // namespace

UsageResetNotifier::UsageResetNotifier(std::shared_ptr<ReminderCentre> centre, std::function<double()> now)
    : m_centre(std::move(centre)), m_now(std::move(now)) {}

QCoro::Task<> UsageResetNotifier::schedule(std::optional<wire::RateLimitWindow> window) {
  std::vector<wire::RateLimitWindow> windows;
  if (window) windows.push_back(*std::move(window));
  return schedule(windows);
}

QCoro::Task<> UsageResetNotifier::schedule(const std::vector<wire::RateLimitWindow>& windows) {
  return replaceReminders(m_centre, live::resetReminders(windows, m_now()));
}

}  // namespace varnel::device
