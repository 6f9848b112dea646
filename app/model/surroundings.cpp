// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/model/surroundings.h"

#include <QtGlobal>
#include <memory>

#include "app/client/async.h"
#include "app/device/keychain_store.h"
#include "app/platform/defaults_store_file.h"
#include "app/platform/device_name.h"

namespace varnel::model {
namespace {

CredentialStore keychain(const std::filesystem::path& directory) {
  const auto store = std::make_shared<device::KeychainStore>(directory);
  return {
      .load = [store] { return store->load().value_or(std::nullopt); },
      .save = [store](const wire::PairingCredentials& credentials) -> std::optional<QString> {
        const auto saved = store->save(credentials);
        if (saved) return std::nullopt;
        return QString::fromStdString(device::message(saved.error()));
      },
      .remove = [store] { store->remove(); },
  };
}

double secondsSince1970() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

void warn(const std::string& sentence) {
  qWarning("%s", sentence.c_str());
}

}  // namespace

Surroundings systemSurroundings(const std::filesystem::path& directory) {
  return {
      .credentialStore = keychain(directory),
      .clock = {.now = secondsSince1970, .sleep = client::sleepFor},
      .deviceName = platform::deviceName,
      .defaults = std::make_shared<platform::DefaultsFileStore>(directory / "defaults", warn),
  };
}

}  // namespace varnel::model
