// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <filesystem>
#include <string>

namespace varnel::store {

/// The folder that one bridge keeps its state in: 0700, its files 0600. Holding it means holding its lock, so that two
/// bridges never write the same files.
class StateDirectory {
 public:
  /// $XDG_STATE_HOME/varnel, or ~/.local/state/varnel; empty when neither is known.
  static std::filesystem::path defaultPath();
  /// Makes the folder when it is missing and takes the lock. The reason when it cannot.
  static std::expected<StateDirectory, std::string> take(const std::filesystem::path& path);

  StateDirectory(StateDirectory&& other) noexcept;
  StateDirectory& operator=(StateDirectory&&) = delete;
  ~StateDirectory();

  [[nodiscard]] std::filesystem::path database() const { return database(m_path); }
  static std::filesystem::path database(const std::filesystem::path& path) { return path / "varnel.sqlite"; }
  [[nodiscard]] std::filesystem::path uploads() const { return m_path / "uploads"; }
  [[nodiscard]] std::filesystem::path controlSocket() const { return controlSocket(m_path); }
  static std::filesystem::path controlSocket(const std::filesystem::path& path) { return path / "control.sock"; }

 private:
  StateDirectory(std::filesystem::path path, int lock) : m_path(std::move(path)), m_lock(lock) {}
  std::filesystem::path m_path;
  int m_lock;
};

}  // namespace varnel::store
