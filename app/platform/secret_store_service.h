// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <stop_token>
#include <string>

#include "app/platform/secret_store.h"

namespace varnel::platform {

/// A secret in the Secret Service of the session (gnome-keyring, KWallet, ...), in its default collection, found by the
/// attributes `service` and `account` alone.
///
/// Nobody is ever asked anything: a keyring that opens without a question is opened, one that would ask for a password
/// counts as locked (status 2), and so does a secret in it, which is thereby told apart from no secret. No bus, and no
/// service on it, are `storeIsAbsent`. Each call makes its own connection and leaves none behind, so a bus or a service
/// that comes or goes while the program runs is noticed.
class SecretServiceStore : public SecretStore {
 public:
  struct Item {
    std::string service;
    std::string account;
    std::string label;  ///< what keyring managers show to people
  };
  explicit SecretServiceStore(Item item);

  SecretResult<void> save(std::string secret, std::stop_token token) override;
  SecretResult<std::optional<std::string>> load(std::stop_token token) override;
  SecretResult<void> remove(std::stop_token token) override;

 private:
  Item m_item;
};

}  // namespace varnel::platform
