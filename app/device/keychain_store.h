// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "app/platform/secret_store.h"
#include "core/json/decode_error.h"
#include "core/wire/pairing.h"

namespace varnel::device {

/// A store said no: `errno` when it was the file or the time (ETIMEDOUT, 110), else libsecret's error code.
struct KeychainError {
  std::int32_t status = 0;

  /// "Keychain error <status>".
  [[nodiscard]] std::string message() const;
  bool operator==(const KeychainError&) const = default;
};

/// Why an operation failed: the store, or what is stored in it.
using KeychainFailure = std::variant<KeychainError, json::DecodeError>;
std::string message(const KeychainFailure& failure);

/// Keeps the one pairing of this device: in the Secret Service where one answers, else in a file. Without state of its
/// own; the main thread calls, and is held for `kLimit` at most, whatever the keyring or the disk does.
///
/// A Secret Service that is absent, locked or silent must not cost anyone their pairing, so `save` then takes the file.
/// What the service may hold all the same is outdated from then on; it is deleted when the service is there again, and
/// until then an empty file beside the other (`bridge-pairing.outdated`) says that it no longer counts. The same goes
/// for `remove`: what could not be deleted does not come back.
class KeychainStore {
 public:
  static constexpr std::chrono::milliseconds kLimit{2000};

  /// `directory` belongs to the application; it is made when the first file is (0700).
  explicit KeychainStore(const std::filesystem::path& directory);

  /// Where things are kept; tests put others here.
  struct Stores {
    std::shared_ptr<platform::SecretStore> service;
    std::shared_ptr<platform::SecretStore> file;
    std::shared_ptr<platform::SecretStore> outdated;  ///< stores something while the service's content does not count
  };
  explicit KeychainStore(Stores stores);

  /// Replaces the pairing. On failure (neither store takes it) the old one still stands in the store it was in.
  std::expected<void, KeychainFailure> save(const wire::PairingCredentials& credentials);

  /// Asks the service, then the file. Nothing when there is no pairing. When the service fails (a locked keyring that
  /// holds a pairing: status 2; silence: 110) and the file has none, that is the failure, as there may be one.
  std::expected<std::optional<wire::PairingCredentials>, KeychainFailure> load();

  /// Clears both stores. Never fails; what is out of reach now is cleared by a later `load`, `save` or `remove`.
  void remove();

 private:
  using Deadline = std::chrono::steady_clock::time_point;

  platform::SecretResult<void> clearOutdated(Deadline deadline);
  platform::SecretResult<void> saveInFile(const std::string& text, Deadline deadline);
  platform::SecretResult<void> settleOnService(Deadline deadline);

  Stores m_stores;
};

}  // namespace varnel::device
