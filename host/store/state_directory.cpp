// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/state_directory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace varnel::store {

namespace {

std::string reason(const std::filesystem::path& path) {
  return path.string() + ": " + std::strerror(errno);
}

/// Makes the folder, or tightens one that is ours; refuses one that belongs to somebody else.
std::expected<void, std::string> makePrivate(const std::filesystem::path& path) {
  if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) return std::unexpected(reason(path));
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) return std::unexpected(reason(path));
  if (!S_ISDIR(status.st_mode)) return std::unexpected(path.string() + " is not a directory");
  if (status.st_uid != ::geteuid()) return std::unexpected(path.string() + " belongs to another user");
  if ((status.st_mode & 0077U) != 0 && ::chmod(path.c_str(), 0700) != 0) return std::unexpected(reason(path));
  return {};
}

}  // namespace

std::filesystem::path StateDirectory::defaultPath() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return std::filesystem::path(state) / "varnel";
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return std::filesystem::path(home) / ".local" / "state" / "varnel";
  return {};
}

std::expected<StateDirectory, std::string> StateDirectory::take(const std::filesystem::path& path) {
  std::error_code error;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), error);
  if (error) return std::unexpected(path.parent_path().string() + ": " + error.message());
  if (auto made = makePrivate(path); !made) return std::unexpected(made.error());
  if (auto made = makePrivate(path / "uploads"); !made) return std::unexpected(made.error());
  const auto file = path / "lock";
  const int lock = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (lock < 0) return std::unexpected(reason(file));
  StateDirectory directory(path, lock);
  if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
    return std::unexpected("another varnel is using " + path.string());
  }
  return directory;
}

StateDirectory::StateDirectory(StateDirectory&& other) noexcept
    : m_path(std::move(other.m_path)), m_lock(std::exchange(other.m_lock, -1)) {}

StateDirectory::~StateDirectory() {
  if (m_lock >= 0) ::close(m_lock);
}

}  // namespace varnel::store
