// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>

#include "app/client/client_error.h"
#include "core/wire/pairing.h"

/// What the application model needs from the system it runs on, as plain functions: a test hands in its own.
namespace varnel::model {

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

struct Surroundings {
  CredentialStore credentialStore;
  Clock clock;
  std::function<std::string()> deviceName;  ///< how the bridge will name this device to its owner
};

/// The real ones: the keychain store, the system's clocks and the machine's name. `directory` belongs to the
/// application and is where the pairing is kept when there is no Secret Service.
Surroundings systemSurroundings(const std::filesystem::path& directory);

}  // namespace varnel::model
