// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/projects.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "core/json/text.h"

namespace varnel::agent::codex {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::minutes kRemembered{1};

std::string baseName(const fs::path& path) {
  const auto name = path.filename().empty() ? path.parent_path().filename() : path.filename();
  return name.empty() ? path.string() : name.string();
}

/// The agent's own sandbox leaves empty folders of that name where it forbids to make one.
bool isWorktree(const fs::path& folder) {
  std::error_code error;
  const auto git = folder / ".git";
  return fs::exists(git / "HEAD", error) || fs::is_regular_file(git, error);
}

bool isText(const std::string& text) {
  return json::write(text).has_value();
}

}  // namespace

std::optional<fs::path> worktreeOf(const fs::path& folder) {
  for (fs::path path = folder.lexically_normal(); path.is_absolute(); path = path.parent_path()) {
    if (isWorktree(path)) return path.has_filename() ? path : path.parent_path();
    if (path == path.root_path()) break;
  }
  return std::nullopt;
}

std::string worktreeName(const std::string& folder) {
  struct Known {
    std::string name;
    std::chrono::steady_clock::time_point until;
  };
  static std::map<std::string, Known> known;
  const auto now = std::chrono::steady_clock::now();
  auto& entry = known[folder];
  if (entry.until > now) return entry.name;
  entry.name = baseName(worktreeOf(folder).value_or(folder));
  entry.until = now + kRemembered;
  return entry.name;
}

bool isHighRisk(const fs::path& folder, const fs::path& home) {
  std::error_code error;
  const auto real = fs::weakly_canonical(folder, error);
  const auto& path = error ? folder : real;
  const auto realHome = fs::weakly_canonical(home, error);
  for (const fs::path& risky : {fs::path("/"), fs::path("/root"), fs::path("/etc"), home, realHome}) {
    if (path == risky) return true;
  }
  return path.string().starts_with("/etc/") || !worktreeOf(path);
}

std::vector<wire::ProjectRecord> projectsOf(const std::set<std::string>& folders, const fs::path& home) {
  std::set<std::string> paths;
  std::error_code error;
  for (const auto& folder : folders) {
    if (!folder.starts_with('/') || !fs::is_directory(folder, error)) continue;
    paths.insert(worktreeOf(folder).value_or(fs::path(folder).lexically_normal()).string());
  }
  std::vector<wire::ProjectRecord> projects;
  for (const auto& path : paths) {
    if (isText(path)) projects.push_back({.path = path, .name = baseName(path), .highRisk = isHighRisk(path, home)});
  }
  std::ranges::sort(projects, {}, [](const auto& project) { return std::pair(project.name, project.path); });
  return projects;
}

}  // namespace varnel::agent::codex
