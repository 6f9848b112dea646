// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

/// Small files that must be whole at any moment. Blocking calls, safe from any thread and from several processes;
/// errors carry the `errno` of the call that failed, in the generic category.
namespace varnel::platform {

/// Puts `bytes` in the place of `path` so that whoever reads sees the old content or the new one, also after a kill or
/// a power cut. On return the new content is on the disk; on failure the old one stands. The folder must exist. A kill
/// in the middle leaves a file `.NAME.new` behind, which the next call for the same path uses up.
std::expected<void, std::error_code> replaceFile(const std::filesystem::path& path, std::string_view bytes,
                                                 mode_t mode = 0600);

/// The same without waiting for the disk: a kill leaves the old content or the new one, while a power cut before
/// `syncFile` may spoil the new one. Therefore the content that was synced last stays at `previousOf(path)` until then.
std::expected<void, std::error_code> replaceFileUnsynced(const std::filesystem::path& path, std::string_view bytes);

/// Waits until the file is on the disk, and then drops its previous content, unless another has taken its place
/// meanwhile. A file that is not there is no failure.
std::expected<void, std::error_code> syncFile(const std::filesystem::path& path);

/// Where the previous content of a file is that was replaced and not synced yet; nothing is there otherwise.
std::filesystem::path previousOf(const std::filesystem::path& path);

/// Deletes the file and what calls for it that were killed may have left, and waits until that is on the disk. A file
/// that is not there is no failure.
std::expected<void, std::error_code> removeFile(const std::filesystem::path& path);

/// The whole content, or nothing when there is no such file.
using FileContent = std::expected<std::optional<std::string>, std::error_code>;

/// Takes away on the way what others may do with the file, as far as the file system lets it. Only regular files of up
/// to `largest` bytes are read, and a symbolic link is refused.
FileContent readPrivateFile(const std::filesystem::path& path, std::size_t largest = 1 << 20);

/// Keeps a file that is of no use out of the way under another name, "NAME.corrupt" or with a number behind it, and
/// returns that. Nothing when `isBad`, asked while nobody can replace the file, finds it good after all.
std::expected<std::optional<std::filesystem::path>, std::error_code> setAsideIf(
    const std::filesystem::path& path, const std::function<bool(const FileContent&)>& isBad);

/// Makes the folder and its missing parents for this user alone (0700), and takes away what others may do in the
/// folder when it exists already. Give it only folders that belong to the application.
std::expected<void, std::error_code> makePrivateDirectory(const std::filesystem::path& directory);

}  // namespace varnel::platform
