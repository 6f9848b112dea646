// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/secret_store_file.h"

#include <expected>
#include <system_error>
#include <type_traits>
#include <utility>

#include "app/platform/atomic_file.h"

namespace varnel::platform {
namespace {

template <class Value>
SecretResult<Value> asSecretResult(std::expected<Value, std::error_code> result) {
  if (!result) return std::unexpected(SecretError{.status = result.error().value()});
  if constexpr (std::is_void_v<Value>) {
    return {};
  } else {
    return std::move(*result);
  }
}

}  // namespace

SecretFileStore::SecretFileStore(std::filesystem::path file) : m_file(std::move(file)) {}

SecretResult<void> SecretFileStore::save(std::string secret, std::stop_token /*token*/) {
  if (auto made = makePrivateDirectory(m_file.parent_path()); !made) return asSecretResult(std::move(made));
  return asSecretResult(replaceFile(m_file, secret));
}

SecretResult<std::optional<std::string>> SecretFileStore::load(std::stop_token /*token*/) {
  return asSecretResult(readPrivateFile(m_file));
}

SecretResult<void> SecretFileStore::remove(std::stop_token /*token*/) {
  return asSecretResult(removeFile(m_file));
}

}  // namespace varnel::platform
