// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/keychain_store.h"

#include <stop_token>
#include <string_view>
#include <utility>

#include "app/platform/secret_store_file.h"
#include "app/platform/secret_store_service.h"
#include "app/platform/secret_store_worker.h"
#include "core/wire/codec.h"

namespace varnel::device {
namespace {

using platform::runBounded;
using platform::SecretResult;
using Clock = std::chrono::steady_clock;

/// What is kept of `kLimit` for the files when the service uses up the rest.
constexpr std::chrono::milliseconds kFileShare{500};
constexpr std::string_view kAccount = "bridge-pairing";

KeychainStore::Stores systemStores(const std::filesystem::path& directory) {
  const std::string account(kAccount);
  return {.service = std::make_shared<platform::SecretServiceStore>(platform::SecretServiceStore::Item{
              .service = "org.varnel.Varnel", .account = account, .label = "Varnel pairing"}),
          .file = std::make_shared<platform::SecretFileStore>(directory / (account + ".json")),
          .outdated = std::make_shared<platform::SecretFileStore>(directory / (account + ".outdated"))};
}

std::unexpected<KeychainFailure> asFailure(platform::SecretError error) {
  return std::unexpected<KeychainFailure>(KeychainError{error.status});
}

std::expected<std::optional<wire::PairingCredentials>, KeychainFailure> decodePairing(const std::string& text) {
  auto credentials = wire::decode<wire::PairingCredentials>(text);
  if (!credentials) return std::unexpected<KeychainFailure>(std::move(credentials.error()));
  return std::move(*credentials);
}

struct FileContent {
  SecretResult<std::optional<std::string>> pairing;
  bool serviceIsOutdated = false;
};

FileContent readFiles(Clock::time_point deadline, const KeychainStore::Stores& stores) {
  const auto content =
      runBounded<FileContent>(deadline, [stores](const std::stop_token& token) -> SecretResult<FileContent> {
        const auto outdated = stores.outdated->load(token);
        return FileContent{.pairing = stores.file->load(token),
                           .serviceIsOutdated = outdated.has_value() && outdated->has_value()};
      });
  if (!content) return {.pairing = std::unexpected(content.error())};
  return *content;
}

}  // namespace

std::string KeychainError::message() const {
  return "Keychain error " + std::to_string(status);
}

std::string message(const KeychainFailure& failure) {
  return std::visit([](const auto& reason) { return reason.message(); }, failure);
}

KeychainStore::KeychainStore(const std::filesystem::path& directory) : KeychainStore(systemStores(directory)) {}

KeychainStore::KeychainStore(Stores stores) : m_stores(std::move(stores)) {}

std::expected<void, KeychainFailure> KeychainStore::save(const wire::PairingCredentials& credentials) {
  const auto text = wire::encode(credentials);
  if (!text) return std::unexpected<KeychainFailure>(text.error());

  const Deadline deadline = Clock::now() + kLimit;
  const auto taken = runBounded<void>(
      deadline - kFileShare,
      [service = m_stores.service, text = *text](const std::stop_token& token) { return service->save(text, token); });
  const auto settled = taken ? settleOnService(deadline) : saveInFile(*text, deadline);
  if (!settled) return asFailure(settled.error());
  return {};
}

SecretResult<void> KeychainStore::settleOnService(Deadline deadline) {
  return runBounded<void>(deadline, [stores = m_stores](const std::stop_token& token) -> SecretResult<void> {
    const auto outdated = stores.outdated->load(token);
    if (outdated.has_value() && outdated->has_value()) {
      // Left standing, it would discard at the next start what was just saved.
      if (auto lifted = stores.outdated->remove(token); !lifted) return lifted;
    }
    // A pairing that stays in a file that nobody can delete is overruled by the service's.
    static_cast<void>(stores.file->remove(token));
    return {};
  });
}

SecretResult<void> KeychainStore::saveInFile(const std::string& text, Deadline deadline) {
  // In this order a kill in between discards neither pairing.
  auto saved = runBounded<void>(deadline, [stores = m_stores, text](const std::stop_token& token) {
    auto written = stores.file->save(text, token);
    return written ? stores.outdated->save({}, token) : written;
  });
  if (saved) static_cast<void>(clearOutdated(deadline));
  return saved;
}

std::expected<std::optional<wire::PairingCredentials>, KeychainFailure> KeychainStore::load() {
  const Deadline start = Clock::now();
  // The file is read first, since a silent service may use up the time; its content counts only after the service's.
  const FileContent file = readFiles(start + kFileShare, m_stores);
  SecretResult<std::optional<std::string>> held;
  if (file.serviceIsOutdated) {
    static_cast<void>(clearOutdated(start + kLimit));
  } else {
    held = runBounded<std::optional<std::string>>(
        start + kLimit, [service = m_stores.service](const std::stop_token& token) { return service->load(token); });
  }

  if (held && *held) return decodePairing(**held);
  if (file.pairing && *file.pairing) return decodePairing(**file.pairing);
  if (!held && !held.error().storeIsAbsent) return asFailure(held.error());
  if (!file.pairing) return asFailure(file.pairing.error());
  return std::nullopt;
}

void KeychainStore::remove() {
  const Deadline start = Clock::now();
  // Marked first: whatever happens after the file is gone, the service's pairing does not come back.
  static_cast<void>(runBounded<void>(start + kFileShare, [stores = m_stores](const std::stop_token& token) {
    const auto marked = stores.outdated->save({}, token);
    const auto removed = stores.file->remove(token);
    return marked ? removed : marked;
  }));
  static_cast<void>(clearOutdated(start + kLimit));
}

/// Deletes what the service holds and, once that has happened, the mark that it does not count.
SecretResult<void> KeychainStore::clearOutdated(Deadline deadline) {
  auto cleared = runBounded<void>(
      deadline, [service = m_stores.service](const std::stop_token& token) { return service->remove(token); });
  if (!cleared) return cleared;
  return runBounded<void>(
      deadline, [outdated = m_stores.outdated](const std::stop_token& token) { return outdated->remove(token); });
}

}  // namespace varnel::device
