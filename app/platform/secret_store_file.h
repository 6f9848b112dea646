// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>

#include "app/platform/secret_store.h"

namespace varnel::platform {

/// A secret in a file (0600) of its own, in a folder that only this user may enter (0700, made or narrowed by `save`).
/// Replaced as a whole and synced, so a kill at any moment leaves the old secret or the new one.
class SecretFileStore : public SecretStore {
 public:
  explicit SecretFileStore(std::filesystem::path file);

  SecretResult<void> save(std::string secret, std::stop_token token) override;
  SecretResult<std::optional<std::string>> load(std::stop_token token) override;
  SecretResult<void> remove(std::stop_token token) override;

 private:
  std::filesystem::path m_file;
};

}  // namespace varnel::platform
