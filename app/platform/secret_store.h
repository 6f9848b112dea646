// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <stop_token>
#include <string>

namespace varnel::platform {

/// Why a store did not do what it was asked. A number only, so that no secret can be in it.
struct SecretError {
  /// `errno` for a file and for a wait that ended (ETIMEDOUT, 110); for the Secret Service the code of the error that
  /// libsecret gave, such as 2 for a locked keyring.
  std::int32_t status = 0;
  /// This system has no such store, now at least: its users go on as if it were empty.
  bool storeIsAbsent = false;

  bool operator==(const SecretError&) const = default;
};

template <class Value>
using SecretResult = std::expected<Value, SecretError>;

/// A place for one secret that outlives the program. The calls block, for ever if what stands behind them hangs, so
/// they belong on a worker (`runBounded`); any thread may call. A stop of `token` lets them return early where they
/// can, with any error.
class SecretStore {
 public:
  virtual ~SecretStore() = default;

  /// Replaces what is stored.
  virtual SecretResult<void> save(std::string secret, std::stop_token token) = 0;
  /// Nothing when nothing is stored, which is no failure. Something stored that cannot be had is one.
  virtual SecretResult<std::optional<std::string>> load(std::stop_token token) = 0;
  /// On success nothing is stored any more, whether or not something was.
  virtual SecretResult<void> remove(std::stop_token token) = 0;
};

}  // namespace varnel::platform
