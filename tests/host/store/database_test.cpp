// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/database.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "host/store/state_directory.h"
#include "host/store/store.h"
#include "tests/support/temporary_directory.h"

namespace varnel::store {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using varnel::testing::TemporaryDirectory;

unsigned modeOf(const std::filesystem::path& path) {
  struct stat status{};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 0777U;
}

std::unique_ptr<Store> openMemory() {
  return Store::open(":memory:", "/nowhere").value();
}

TEST(Database, refusesAFileOfANewerVersionAndWhatIsNoDatabase) {
  const TemporaryDirectory folder;
  const auto file = folder.path() / "state.sqlite";
  ASSERT_TRUE(Database::open(file));
  Database::open(file)->execute("PRAGMA user_version = 99");
  const auto newer = Database::open(file);
  ASSERT_FALSE(newer);
  EXPECT_THAT(newer.error(), HasSubstr("newer version"));

  const auto text = folder.path() / "text";
  std::FILE* stream = std::fopen(text.c_str(), "w");
  std::fputs("this is a text of more than one hundred bytes, which is what SQLite looks at first of all in a file\n\n",
             stream);
  std::fclose(stream);
  EXPECT_FALSE(Database::open(text));
}

TEST(Database, rollsBackWhatIsNotCommitted) {
  const auto database = Database::open(":memory:").value();
  {
    const Transaction dropped(database);
    database.execute("INSERT INTO tracking(session_id) VALUES ('dropped')");
  }
  Transaction kept(database);
  database.execute("INSERT INTO tracking(session_id) VALUES ('kept')");
  kept.commit();
  auto rows = database.prepare("SELECT group_concat(session_id) FROM tracking");
  ASSERT_TRUE(rows.step());
  EXPECT_EQ(rows.text(0), "kept");
}

TEST(Database, losesNothingAcknowledgedWhenItIsKilled) {
  const TemporaryDirectory folder;
  const auto file = folder.path() / "state.sqlite";
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    // Says each number only after it has been written; dies in the middle of one.
    auto store = Store::open(file, folder.path()).value();
    for (std::int64_t number = 1;; ++number) {
      store->events.append(number, "event " + std::to_string(number));
      if (::write(pipe[1], &number, sizeof(number)) != sizeof(number)) ::_exit(1);
    }
  }
  ::close(pipe[1]);
  std::int64_t acknowledged = 0;
  while (acknowledged < 150) ASSERT_EQ(::read(pipe[0], &acknowledged, sizeof(acknowledged)), 8);
  ::kill(child, SIGKILL);
  while (::read(pipe[0], &acknowledged, sizeof(acknowledged)) == 8) {
  }
  ::close(pipe[0]);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);

  const auto store = Store::open(file, folder.path()).value();
  EXPECT_GE(store->events.head(), acknowledged);
  EXPECT_EQ(store->events.countAfter(0), store->events.head());
}

TEST(StateDirectory, isPrivateAndHeldByOneBridge) {
  const TemporaryDirectory folder;
  const auto path = folder.path() / "deep" / "state";
  {
    const auto held = StateDirectory::take(path);
    ASSERT_TRUE(held) << held.error();
    EXPECT_EQ(modeOf(path), 0700U);
    EXPECT_EQ(modeOf(held->uploads()), 0700U);
    EXPECT_EQ(modeOf(path / "lock"), 0600U);
    const auto second = StateDirectory::take(path);
    ASSERT_FALSE(second);
    EXPECT_THAT(second.error(), HasSubstr("another varnel is using"));
  }
  ::chmod(path.c_str(), 0755);
  EXPECT_TRUE(StateDirectory::take(path)) << "the lock has not been given back";
  EXPECT_EQ(modeOf(path), 0700U) << "a loose mode has not been tightened";
}

TEST(Devices, areKnownByTheHashOfTheirToken) {
  const auto store = openMemory();
  store->devices.add({.id = "d1", .name = "Phone", .createdAt = 1, .lastSeenAt = {}}, digestOf("token one"));
  store->devices.add({.id = "d2", .name = "Other", .createdAt = 2, .lastSeenAt = {}}, digestOf("token two"));
  ASSERT_TRUE(store->devices.findByToken(digestOf("token two")));
  EXPECT_EQ(store->devices.findByToken(digestOf("token two"))->id, "d2");
  EXPECT_FALSE(store->devices.findByToken(digestOf("token tw")));
  store->devices.markSeen("d1", 7);
  EXPECT_EQ(store->devices.findByToken(digestOf("token one"))->lastSeenAt, 7);
  EXPECT_TRUE(store->devices.remove("d1"));
  EXPECT_FALSE(store->devices.remove("d1"));
  EXPECT_FALSE(store->devices.findByToken(digestOf("token one")));
}

TEST(EventLog, keepsTheNewestAndNeverGivesANumberTwice) {
  const auto database = Database::open(":memory:").value();
  EventLog log(database, 50);
  for (std::int64_t number = 1; number <= 200; ++number) log.append(number, std::to_string(number));
  EXPECT_EQ(log.trimmed(), 150);
  EXPECT_THAT(log.after(198), ElementsAre("199", "200"));
  EXPECT_EQ(log.reserve(3), 201);
  EXPECT_EQ(log.head(), 203);
  EXPECT_EQ(log.countAfter(200), 0) << "a number that was only reserved counts as an event";
}

TEST(Tracking, followsOneConversationAtATime) {
  const auto store = openMemory();
  store->tracking.setPinned("a", true);
  store->tracking.track("a");
  store->tracking.track("b");
  EXPECT_TRUE(store->tracking.of("a").pinned);
  EXPECT_FALSE(store->tracking.of("a").tracked);
  EXPECT_TRUE(store->tracking.of("b").tracked);
  store->tracking.untrackAll();
  EXPECT_FALSE(store->tracking.of("b").tracked);
  EXPECT_TRUE(store->tracking.all().at("a").pinned);
}

TEST(Random, isNeverTheSameAndHasAllItsBits) {
  EXPECT_EQ(randomText(16).size(), 22U);
  EXPECT_EQ(randomText(32).size(), 43U);
  EXPECT_NE(randomText(16), randomText(16));
  EXPECT_EQ(randomText(500).find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_"),
            std::string::npos);
}

}  // namespace
}  // namespace varnel::store
