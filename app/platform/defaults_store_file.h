// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QThreadPool>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "app/platform/defaults_store.h"

namespace varnel::platform {

/// Defaults in a folder of their own, a file a key, so that writers of different keys, also in other processes, never
/// meet. A file is replaced as a whole: a kill at any moment leaves the old value or the new one. It is synced on
/// another thread, so that nobody waits for the disk; a power cut before that may cost what was set last, and the value
/// before it is taken. What another process stores is seen at the next look.
///
/// A file that makes no sense is renamed to "KEY.corrupt" and `warn` gets a sentence about it; its key is then empty.
class DefaultsFileStore : public DefaultsStore {
 public:
  using Warn = std::function<void(const std::string&)>;

  /// The folder belongs to the store; it is made by the first `set`.
  explicit DefaultsFileStore(std::filesystem::path directory, Warn warn = {});

  [[nodiscard]] std::optional<DefaultsValue> value(std::string_view key) const override;
  std::expected<void, std::error_code> set(std::string_view key, const DefaultsValue& value) override;
  std::expected<void, std::error_code> remove(std::string_view key) override;

 private:
  /// Which content of a file was read; another one has another stamp.
  struct Stamp {
    std::uint64_t inode = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    std::int64_t size = 0;
    bool operator==(const Stamp&) const = default;
  };
  struct Known {
    Stamp stamp;
    std::optional<DefaultsValue> value;
  };

  static std::optional<Stamp> stampOf(const std::filesystem::path& file);
  [[nodiscard]] std::filesystem::path fileOf(std::string_view key) const;
  [[nodiscard]] std::optional<DefaultsValue> read(const std::filesystem::path& file) const;

  std::filesystem::path m_directory;
  Warn m_warn;
  mutable std::map<std::string, Known, std::less<>> m_known;  ///< what was read last, by key
  QThreadPool m_syncing;                                      ///< one thread, which its end waits for
};

}  // namespace varnel::platform
