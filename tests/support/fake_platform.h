// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/platform/activity_centre.h"
#include "app/platform/defaults_store.h"
#include "app/platform/haptics.h"
#include "app/platform/notification_centre.h"
#include "app/platform/reminder_centre.h"

/// The device of tests: what a phone's system would give, in memory, and every call on record.
namespace varnel::support {

class MemoryDefaultsStore : public platform::DefaultsStore {
 public:
  std::map<std::string, platform::DefaultsValue, std::less<>> values;
  int writes = 0;
  bool full = false;  ///< every write fails

  [[nodiscard]] std::optional<platform::DefaultsValue> value(std::string_view key) const override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  std::expected<void, std::error_code> set(std::string_view key, const platform::DefaultsValue& value) override {
    ++writes;
    if (full) return std::unexpected(std::make_error_code(std::errc::no_space_on_device));
    values.insert_or_assign(std::string(key), value);
    return {};
  }
  std::expected<void, std::error_code> remove(std::string_view key) override {
    if (const auto found = values.find(key); found != values.end()) values.erase(found);
    return {};
  }
};

class FakeNotificationCentre : public platform::NotificationCentre {
 public:
  std::map<std::string, platform::Notification> shown;
  std::vector<std::string> log;  ///< "post ID" and "remove ID" as they came
  std::optional<platform::NotificationCapabilities> server =
      platform::NotificationCapabilities{.body = true, .actions = true, .persistence = true};

  void post(const std::string& id, const platform::Notification& notification) override {
    log.push_back("post " + id);
    shown.insert_or_assign(id, notification);
  }
  void remove(const std::string& id) override {
    log.push_back("remove " + id);
    shown.erase(id);
  }
  [[nodiscard]] std::optional<platform::NotificationCapabilities> capabilities() const override { return server; }
  [[nodiscard]] std::vector<std::string> posted() const override {
    std::vector<std::string> ids;
    for (const auto& [id, notification] : shown) ids.push_back(id);
    return ids;
  }
};

class FakeActivityCentre : public platform::ActivityCentre {
 public:
  std::vector<platform::Activity> existing;
  std::vector<std::string> log;  ///< "request ID", "update ID" and "end ID" as they came
  bool enabled = true;
  bool refuses = false;  ///< requests fail though activities are enabled

  [[nodiscard]] std::vector<platform::Activity> activities() const override { return existing; }
  [[nodiscard]] bool areActivitiesEnabled() const override { return enabled; }
  std::optional<platform::Activity> request(const wire::CodexTurnAttributes& attributes,
                                            const platform::Activity::Content& content) override {
    if (refuses) return std::nullopt;
    existing.push_back(
        {.id = "activity-" + std::to_string(++m_requests), .attributes = attributes, .content = content});
    log.push_back("request " + existing.back().id);
    return existing.back();
  }
  void update(const std::string& id, const platform::Activity::Content& content) override {
    log.push_back("update " + id);
    for (auto& activity : existing) {
      if (activity.id == id) activity.content = content;
    }
  }
  void end(const std::string& id, const platform::Activity::Content& finalContent) override {
    log.push_back("end " + id);
    lastFinalContent = finalContent;
    std::erase_if(existing, [&](const auto& activity) { return activity.id == id; });
  }
  std::optional<platform::Activity::Content> lastFinalContent;

 private:
  int m_requests = 0;
};

class FakeHaptics : public platform::Haptics {
 public:
  std::vector<platform::HapticSignal> felt;
  void notificationOccurred(platform::HapticSignal signal) override { felt.push_back(signal); }
};

class FakeReminderCentre : public platform::ReminderCentre {
 public:
  std::map<std::string, platform::Reminder> pending;
  std::vector<std::string> log;  ///< "remove ID ID", "authorisation", "request" and "add ID" as they came
  platform::ReminderAuthorisation answer = platform::ReminderAuthorisation::Authorised;
  bool grants = false;                  ///< what the user answers
  std::vector<std::string> refusedIds;  ///< reminders that are not taken

  void remove(const std::vector<std::string>& ids) override {
    std::string line = "remove";
    for (const auto& id : ids) {
      line += " " + id;
      pending.erase(id);
    }
    log.push_back(std::move(line));
  }
  QCoro::Task<platform::ReminderAuthorisation> authorisation() override {
    log.emplace_back("authorisation");
    co_return answer;
  }
  QCoro::Task<bool> requestAuthorisation() override {
    log.emplace_back("request");
    co_return grants;
  }
  QCoro::Task<bool> add(platform::Reminder reminder) override {
    log.push_back("add " + reminder.id);
    if (std::ranges::find(refusedIds, reminder.id) != refusedIds.end()) co_return false;
    pending.insert_or_assign(reminder.id, reminder);
    co_return true;
  }
};

}  // namespace varnel::support
