// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <ranges>
#include <vector>

namespace varnel::platform {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kOthers = 0077;

std::unexpected<std::error_code> lastError() {
  return std::unexpected(std::error_code(errno, std::generic_category()));
}

class Descriptor {
 public:
  explicit Descriptor(int number) : m_number(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (m_number >= 0) ::close(m_number);
  }

  [[nodiscard]] bool isOpen() const { return m_number >= 0; }
  [[nodiscard]] int number() const { return m_number; }

 private:
  int m_number;
};

/// The folder of a file, locked against the other writers in it. Without the lock two of them would share the
/// temporary file; where a file system has no locks that risk is taken, since the second of two writers then fails.
class LockedDirectory {
 public:
  explicit LockedDirectory(const fs::path& directory)
      : m_descriptor(::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    while (isOpen() && ::flock(number(), LOCK_EX) != 0 && errno == EINTR) {
    }
  }

  [[nodiscard]] bool isOpen() const { return m_descriptor.isOpen(); }
  [[nodiscard]] int number() const { return m_descriptor.number(); }

 private:
  Descriptor m_descriptor;
};

std::string temporaryNameOf(const fs::path& path) {
  return "." + path.filename().string() + ".new";
}

std::string previousNameOf(const fs::path& path) {
  return "." + path.filename().string() + ".old";
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool unlinkIfThere(int directory, const std::string& name) {
  return ::unlinkat(directory, name.c_str(), 0) == 0 || errno == ENOENT;
}

/// A new file each time (never one that stands there), so that nobody else holds it open or has set its mode.
std::expected<void, std::error_code> writeTemporary(int directory, const std::string& name, std::string_view bytes,
                                                    mode_t mode, bool isSynced) {
  if (!unlinkIfThere(directory, name)) return lastError();
  const Descriptor file(::openat(directory, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file.isOpen()) return lastError();
  if (!writeAll(file.number(), bytes)) return lastError();
  // 0600 is what it was made with; only another mode needs a call, which some file systems refuse.
  if (mode != 0600 && ::fchmod(file.number(), mode) != 0) return lastError();
  if (isSynced && ::fsync(file.number()) != 0) return lastError();
  return {};
}

/// Keeps the file under the other name, too, unless something stands there. False when the file system cannot.
bool keepPrevious(int directory, const std::string& name, const std::string& previous) {
  return ::linkat(directory, name.c_str(), directory, previous.c_str(), 0) == 0 || errno == EEXIST || errno == ENOENT;
}

std::expected<std::string, std::error_code> readAll(int descriptor, std::size_t largest) {
  std::string content;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = ::read(descriptor, block.data(), block.size());
    if (count == 0) return content;
    if (count < 0 && errno != EINTR) return lastError();
    if (count > 0) content.append(block.data(), static_cast<std::size_t>(count));
    if (content.size() > largest) return std::unexpected(std::make_error_code(std::errc::file_too_large));
  }
}

/// Parents that exist are left as they are: they are not ours.
std::expected<void, std::error_code> makeParents(const fs::path& directory) {
  std::vector<fs::path> missing;
  for (fs::path parent = directory.parent_path(); !parent.empty() && ::access(parent.c_str(), F_OK) != 0;
       parent = parent.parent_path()) {
    missing.push_back(parent);
  }
  for (const fs::path& parent : missing | std::views::reverse) {
    if (::mkdir(parent.c_str(), 0700) != 0 && errno != EEXIST) return lastError();
  }
  return {};
}

}  // namespace

std::expected<void, std::error_code> replaceFile(const fs::path& path, std::string_view bytes, mode_t mode) {
  const LockedDirectory directory(path.parent_path());
  if (!directory.isOpen()) return lastError();
  const std::string temporary = temporaryNameOf(path);

  auto written = writeTemporary(directory.number(), temporary, bytes, mode, true);
  if (written && ::renameat(directory.number(), temporary.c_str(), directory.number(), path.filename().c_str()) != 0) {
    written = lastError();
  }
  if (!written) {
    unlinkIfThere(directory.number(), temporary);
    return written;
  }
  if (::fsync(directory.number()) != 0) return lastError();
  return {};
}

std::expected<void, std::error_code> replaceFileUnsynced(const fs::path& path, std::string_view bytes) {
  const LockedDirectory directory(path.parent_path());
  if (!directory.isOpen()) return lastError();
  const std::string temporary = temporaryNameOf(path);
  const std::string name = path.filename().string();

  const bool hasPrevious = keepPrevious(directory.number(), name, previousNameOf(path));
  auto written = writeTemporary(directory.number(), temporary, bytes, 0600, !hasPrevious);
  if (written && ::renameat(directory.number(), temporary.c_str(), directory.number(), name.c_str()) != 0) {
    written = lastError();
  }
  if (!written) unlinkIfThere(directory.number(), temporary);
  return written;
}

std::expected<void, std::error_code> syncFile(const fs::path& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file.isOpen() && errno == ENOENT) return {};
  if (!file.isOpen() || ::fsync(file.number()) != 0) return lastError();
  // Only now: whoever replaces the file must not wait for the disk.
  const LockedDirectory directory(path.parent_path());
  if (!directory.isOpen()) return lastError();
  struct stat synced{};
  struct stat found{};
  if (::fstat(file.number(), &synced) != 0) return lastError();
  if (::fstatat(directory.number(), path.filename().c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) return {};
  if (synced.st_dev != found.st_dev || synced.st_ino != found.st_ino) return {};
  if (!unlinkIfThere(directory.number(), previousNameOf(path))) return lastError();
  return {};
}

fs::path previousOf(const fs::path& path) {
  return path.parent_path() / previousNameOf(path);
}

std::expected<void, std::error_code> removeFile(const fs::path& path) {
  const LockedDirectory directory(path.parent_path());
  if (!directory.isOpen() && errno == ENOENT) return {};
  if (!directory.isOpen()) return lastError();
  if (!unlinkIfThere(directory.number(), temporaryNameOf(path))) return lastError();
  if (!unlinkIfThere(directory.number(), previousNameOf(path))) return lastError();
  if (!unlinkIfThere(directory.number(), path.filename().string())) return lastError();
  if (::fsync(directory.number()) != 0) return lastError();
  return {};
}

FileContent readPrivateFile(const fs::path& path, std::size_t largest) {
  // Without O_NONBLOCK a pipe of that name would hold the caller until somebody writes into it.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file.isOpen() && errno == ENOENT) return std::nullopt;
  if (!file.isOpen()) return lastError();
  struct stat status{};
  if (::fstat(file.number(), &status) != 0) return lastError();
  if (!S_ISREG(status.st_mode)) return std::unexpected(std::make_error_code(std::errc::invalid_argument));
  // A medium that knows no modes or is read-only must not keep anyone from what it holds.
  if ((status.st_mode & kOthers) != 0) static_cast<void>(::fchmod(file.number(), 0600));
  return readAll(file.number(), largest);
}

std::expected<std::optional<fs::path>, std::error_code> setAsideIf(
    const fs::path& path, const std::function<bool(const FileContent&)>& isBad) {
  const LockedDirectory directory(path.parent_path());
  if (!directory.isOpen()) return lastError();
  if (!isBad(readPrivateFile(path, std::numeric_limits<std::size_t>::max()))) return std::nullopt;
  for (int number = 1;; ++number) {
    fs::path aside = path;
    aside += number == 1 ? ".corrupt" : ".corrupt-" + std::to_string(number);
    if (::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0) return aside;
    if (errno != EEXIST) return lastError();
  }
}

std::expected<void, std::error_code> makePrivateDirectory(const fs::path& directory) {
  if (auto parents = makeParents(directory); !parents) return parents;
  if (::mkdir(directory.c_str(), 0700) == 0) return {};
  if (errno != EEXIST) return lastError();

  const Descriptor found(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status{};
  if (!found.isOpen() || ::fstat(found.number(), &status) != 0) return lastError();
  if ((status.st_mode & kOthers) != 0 && ::fchmod(found.number(), 0700) != 0) return lastError();
  return {};
}

}  // namespace varnel::platform
