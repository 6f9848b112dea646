// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/projects.h"

#include <gmock/gmock.h>

#include <fstream>

#include "tests/support/temporary_directory.h"

namespace varnel::agent::codex {
namespace {

namespace fs = std::filesystem;

TEST(Projects, areWorktreesAndWhatLiesOutsideIsRisky) {
  const varnel::testing::TemporaryDirectory folder;
  const fs::path home = folder.path() / "home";
  fs::create_directories(home / "code/app/src/deep");
  fs::create_directories(home / "code/app/.git");
  std::ofstream(home / "code/app/.git/HEAD") << "ref: refs/heads/main\n";
  fs::create_directories(home / "code/app/src/.git");
  fs::create_directories(home / "notes");
  fs::create_directory_symlink(home, folder.path() / "link");
  EXPECT_EQ(worktreeOf(home / "code/app/src/deep"), home / "code/app");
  EXPECT_EQ(worktreeName((home / "code/app/src").string()), "app");
  EXPECT_EQ(worktreeName((home / "notes").string()), "notes");

  const auto projects = projectsOf({(home / "code/app").string(), (home / "code/app/src").string(), home.string(),
                                    (home / "notes").string(), (home / "gone").string(), "relative", "/"},
                                   home);
  std::map<std::string, bool> risks;
  for (const auto& project : projects) risks[project.name] = project.highRisk;
  EXPECT_EQ(projects.size(), 4U);
  EXPECT_EQ(risks, (std::map<std::string, bool>{{"/", true}, {"app", false}, {"home", true}, {"notes", true}}));

  // A home that is itself a worktree is no less a home, however it is reached.
  std::ofstream(home / ".git") << "gitdir: elsewhere\n";
  EXPECT_TRUE(isHighRisk(home, home));
  EXPECT_TRUE(isHighRisk(folder.path() / "link", home));
  EXPECT_FALSE(isHighRisk(home / "notes", home));
  for (const auto* path : {"/", "/etc", "/etc/ssl", "/root"}) EXPECT_TRUE(isHighRisk(path, home)) << path;
}

}  // namespace
}  // namespace varnel::agent::codex
