// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "app/client/client_error.h"
#include "app/platform/defaults_store.h"
#include "core/live/conversation_notifications.h"
#include "core/wire/event.h"
#include "core/wire/pairing.h"
#include "core/wire/usage.h"

/// What the application model needs from the system it runs on, as plain functions: a test hands in its own.
namespace varnel::model {

class AppModel;

/// Where the pairing outlives the program. Called on the main thread and bounded in time.
struct CredentialStore {
  /// Nothing when there is no pairing, and when it cannot be read.
  std::function<std::optional<wire::PairingCredentials>()> load;
  /// The user's text of the failure, nothing on success.
  std::function<std::optional<QString>(const wire::PairingCredentials&)> save;
  /// Removing what is not there is no failure; a failure is not told.
  std::function<void()> remove;
};

struct Clock {
  std::function<double()> now;  ///< seconds since 1970, UTC
  /// Goes on counting while the device sleeps. Ends early, with `Cancelled`, when the token is stopped.
  std::function<client::Task<client::Result<void>>(std::chrono::milliseconds, std::stop_token)> sleep;
};

/// The lock screen's view of a tracked turn; none where these are left as they are.
struct LiveActivities {
  /// Takes up what the last run left there.
  std::function<void()> restore = [] {};
  std::function<client::Task<void>(wire::LiveEvent)> apply = [](auto) -> client::Task<void> { co_return; };
  std::function<client::Task<void>()> clear = []() -> client::Task<void> { co_return; };
  /// Whether a turn may be shown there.
  std::function<bool()> areEnabled = [] { return false; };
};

/// Reminders of the moment a limit resets; none where these are left as they are.
struct UsageResetNotifier {
  /// In place of all that was scheduled before.
  std::function<client::Task<void>(std::vector<wire::RateLimitWindow>)> schedule = [](auto) -> client::Task<void> {
    co_return;
  };
  std::function<void()> removePending = [] {};
};

/// Notifications of single conversations; none where these are left as they are.
struct ConversationNotifier {
  /// What there is to know now; told after everything that may change it.
  std::function<void(live::ConversationsNow)> update = [](const auto&) {};
  /// Withdraws all of them.
  std::function<void()> clear = [] {};
};

struct Surroundings {
  CredentialStore credentialStore;
  Clock clock;
  std::function<std::string()> deviceName;            ///< how the bridge will name this device to its owner
  std::shared_ptr<platform::DefaultsStore> defaults;  ///< never null
  LiveActivities liveActivities = {};
  UsageResetNotifier usageResetNotifier = {};
  ConversationNotifier conversationNotifier = {};
  /// Whether the user has the application before them.
  std::function<bool()> inForeground = [] { return false; };
  /// Connects what the device tells by itself (another path to the bridge, a notification that was touched).
  std::function<void(AppModel&)> attach = [](AppModel&) {};
  /// Called, in this order, at the end of every unpairing, for what belongs to a pairing and is kept elsewhere.
  std::vector<std::function<void()>> onUnpair;
};

/// Whether what is stored and shown outlives the run.
enum class Lasting { Kept, ThisRun };

/// The real ones. `directory` belongs to the application and is where values are kept, the pairing too when there is no
/// Secret Service. Those of one run alone know of no pairing, leave what the device keeps as it is, and withdraw what
/// they showed.
Surroundings systemSurroundings(const std::filesystem::path& directory, Lasting lasting);

}  // namespace varnel::model
