// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/atomic_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <fstream>
#include <random>
#include <string>

#include "tests/support/temporary_directory.h"

namespace varnel::platform {
namespace {

namespace fs = std::filesystem;

mode_t modeOf(const fs::path& path) {
  struct stat status{};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

std::size_t entriesIn(const fs::path& directory) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory), fs::directory_iterator()));
}

class AtomicFileTest : public ::testing::Test {
 protected:
  testing::TemporaryDirectory m_directory;
  fs::path m_file = m_directory.path() / "file";
};

TEST_F(AtomicFileTest, ReplacesContentAndModeAndLeavesNothingElse) {
  ASSERT_TRUE(replaceFile(m_file, "a long first content", 0644));
  EXPECT_EQ(modeOf(m_file), 0644U);
  ASSERT_TRUE(replaceFile(m_file, std::string_view("b\0c", 3)));
  EXPECT_EQ(modeOf(m_file), 0600U);
  EXPECT_EQ(readPrivateFile(m_file).value(), std::string("b\0c", 3));
  EXPECT_EQ(entriesIn(m_directory.path()), 1U);

  ASSERT_TRUE(removeFile(m_file));
  EXPECT_EQ(readPrivateFile(m_file).value(), std::nullopt);
  EXPECT_TRUE(removeFile(m_file)) << "a file that is not there";
  EXPECT_TRUE(removeFile(m_directory.path() / "no folder" / "file"));
}

TEST_F(AtomicFileTest, LeavesTheOldContentWhenTheDiskIsFull) {
  ASSERT_TRUE(replaceFile(m_file, "old"));
  ::signal(SIGXFSZ, SIG_IGN);
  const rlimit full{.rlim_cur = 100, .rlim_max = RLIM_INFINITY};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
  const auto replaced = replaceFile(m_file, std::string(5000, 'x'));
  const rlimit unlimited{.rlim_cur = RLIM_INFINITY, .rlim_max = RLIM_INFINITY};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &unlimited), 0);

  ASSERT_FALSE(replaced);
  EXPECT_EQ(replaced.error().value(), EFBIG);
  EXPECT_EQ(readPrivateFile(m_file).value(), "old");
  EXPECT_EQ(entriesIn(m_directory.path()), 1U);
}

TEST_F(AtomicFileTest, UsesUpWhatAKillLeftBehind) {
  const fs::path leftover = m_directory.path() / ".file.new";
  std::ofstream(leftover) << "half a sec";
  ASSERT_TRUE(replaceFile(m_file, "whole"));
  EXPECT_FALSE(fs::exists(leftover));

  // A link planted there must not be written through.
  const fs::path victim = m_directory.path() / "victim";
  std::ofstream(victim) << "mine";
  fs::create_symlink(victim, leftover);
  ASSERT_TRUE(replaceFile(m_file, "whole again"));
  EXPECT_EQ(readPrivateFile(victim).value(), "mine");

  std::ofstream(leftover) << "half a sec";
  ASSERT_TRUE(removeFile(m_file));
  EXPECT_FALSE(fs::exists(leftover));
}

TEST_F(AtomicFileTest, ReadsOnlyWhatIsAFileOfOurs) {
  std::ofstream(m_file) << "content";
  fs::permissions(m_file, fs::perms(0664));
  EXPECT_EQ(readPrivateFile(m_file).value(), "content");
  EXPECT_EQ(modeOf(m_file), 0600U);

  const fs::path link = m_directory.path() / "link";
  fs::create_symlink(m_file, link);
  EXPECT_EQ(readPrivateFile(link).error().value(), ELOOP);
  const fs::path pipe = m_directory.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(readPrivateFile(pipe).error().value(), EINVAL);
  EXPECT_EQ(readPrivateFile(m_directory.path()).error().value(), EINVAL);
  EXPECT_EQ(readPrivateFile(m_file / "below a file").error().value(), ENOTDIR);
  std::ofstream(m_file) << std::string((1 << 20) + 1, 'x');
  EXPECT_EQ(readPrivateFile(m_file).error().value(), EFBIG);
}

TEST_F(AtomicFileTest, MakesAndNarrowsOnlyItsOwnFolder) {
  const fs::path shared = m_directory.path() / "shared";
  fs::create_directory(shared);
  fs::permissions(shared, fs::perms(0755));
  const fs::path own = shared / "parent" / "own";
  const mode_t before = ::umask(0);
  const auto made = makePrivateDirectory(own);
  ::umask(before);
  ASSERT_TRUE(made);
  EXPECT_EQ(modeOf(own), 0700U);
  EXPECT_EQ(modeOf(own.parent_path()), 0700U);
  EXPECT_EQ(modeOf(shared), 0755U);

  fs::permissions(own, fs::perms(0777));
  ASSERT_TRUE(makePrivateDirectory(own));
  EXPECT_EQ(modeOf(own), 0700U);
  std::ofstream(m_file) << "not a folder";
  EXPECT_EQ(makePrivateDirectory(m_file).error().value(), ENOTDIR);
  EXPECT_EQ(makePrivateDirectory(m_file / "below").error().value(), ENOTDIR);
}

[[noreturn]] void replaceForEver(const fs::path& file, const std::array<std::string, 2>& contents, int ready) {
  if (!replaceFile(file, contents[0]) || ::write(ready, "!", 1) != 1) ::_exit(1);
  for (std::size_t round = 1;; ++round) {
    if (!replaceFile(file, contents[round % 2])) ::_exit(1);
  }
}

TEST_F(AtomicFileTest, SurvivesAKillAtAnyMoment) {
  // Long enough that a plain write would be caught half way.
  const std::array<std::string, 2> contents{std::string(300'000, 'a'), std::string(200'000, 'b')};
  std::mt19937 random(20'26);
  std::size_t leftovers = 0;
  for (int kill = 0; kill < 50; ++kill) {
    std::array<int, 2> ready{};
    ASSERT_EQ(::pipe(ready.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) replaceForEver(m_file, contents, ready[1]);
    char byte = 0;
    ::close(ready[1]);
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    ::close(ready[0]);
    ::usleep(random() % 20'000);  // the moment of the kill is what varies here
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child gave up by itself";

    const auto found = readPrivateFile(m_file).value().value();
    ASSERT_TRUE(found == contents[0] || found == contents[1]) << found.size() << " bytes after kill " << kill;
    ASSERT_EQ(modeOf(m_file), 0600U);
    leftovers += entriesIn(m_directory.path()) - 1;
  }
  EXPECT_GT(leftovers, 0U) << "no kill hit a write, so nothing was tried";
}

}  // namespace
}  // namespace varnel::platform
