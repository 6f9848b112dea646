// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/wire/catalogue.h"

namespace varnel::agent::codex {

/// The root of the Git worktree that a folder lies in.
std::optional<std::filesystem::path> worktreeOf(const std::filesystem::path& folder);
/// The base name of the worktree, or of the folder when it lies in none. Remembers what it found for a minute: it is
/// asked for every conversation of a list.
std::string worktreeName(const std::string& folder);

/// True for a folder in which an agent can do harm: the home folder itself, "/", "/root", "/etc" and what lies in it,
/// and whatever is in no worktree.
bool isHighRisk(const std::filesystem::path& folder, const std::filesystem::path& home);

/// The worktrees of the given folders, and those that lie in none, each once, by name; what is no folder (any more) is
/// left out.
std::vector<wire::ProjectRecord> projectsOf(const std::set<std::string>& folders, const std::filesystem::path& home);

}  // namespace varnel::agent::codex
