// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <ctime>
#include <fstream>
#include <random>
#include <vector>

#include "app/platform/defaults_store_file.h"
#include "tests/support/temporary_directory.h"

namespace varnel::platform {
namespace {

namespace fs = std::filesystem;

class DefaultsFileStoreTest : public ::testing::Test {
 protected:
  DefaultsFileStore open() {
    return DefaultsFileStore(folder, [this](const std::string& text) { warnings.push_back(text); });
  }
  void overwrite(const std::string& key, const std::string& bytes) {
    std::ofstream(folder / key, std::ios::trunc | std::ios::binary) << bytes;
  }

  /// A file that is whole, with that word for its form.
  std::string fileOf(const std::string& form, const std::string& payload) {
    EXPECT_TRUE(open().set("Varnel.Made", Data{payload}));
    std::ifstream file(folder / "Varnel.Made", std::ios::binary);
    std::string content(std::istreambuf_iterator<char>(file), {});
    return content.replace(content.find("data"), 4, form);
  }

  testing::TemporaryDirectory directory;
  fs::path folder = directory.path() / "defaults";
  std::vector<std::string> warnings;
};

TEST_F(DefaultsFileStoreTest, KeepsEveryFormAcrossRunsAndTellsThemApart) {
  const std::map<std::string, DefaultsValue> values{
      {"Varnel.Off", false},
      {"Varnel.Text", std::string("fr-CA")},
      {"Varnel.Empty", std::string()},
      {"Varnel.Data", Data{std::string("\0\xff\nvarnel data 3\n{", 18)}},
      {"Varnel.Dictionary", Dictionary{{R"(a "key")", "é"}, {"", ""}}},
      {"Varnel.None", Dictionary{}},
      {"Varnel/../Odd", true},
  };
  {
    DefaultsFileStore store = open();
    EXPECT_EQ(store.value("Varnel.Text"), std::nullopt) << "the folder is not there yet";
    for (const auto& [key, value] : values) ASSERT_TRUE(store.set(key, value)) << key;
  }
  DefaultsFileStore store = open();
  for (const auto& [key, value] : values) EXPECT_EQ(store.value(key), value) << key;
  EXPECT_EQ(store.get<std::string>("Varnel.Text"), "fr-CA");
  EXPECT_EQ(store.get<Data>("Varnel.Text"), std::nullopt);

  ASSERT_TRUE(store.set("Varnel.Text", true));
  EXPECT_EQ(store.get<std::string>("Varnel.Text"), std::nullopt);
  ASSERT_TRUE(store.remove("Varnel.Text"));
  ASSERT_TRUE(store.remove("Varnel.Text"));
  EXPECT_EQ(store.value("Varnel.Text"), std::nullopt);
  EXPECT_TRUE(warnings.empty());
}

TEST_F(DefaultsFileStoreTest, WhatCannotBeStoredLeavesTheOldValue) {
  DefaultsFileStore store = open();
  ASSERT_TRUE(store.set("Varnel.D", Dictionary{{"a", "b"}}));
  EXPECT_EQ(store.set("Varnel.D", Dictionary{{"a", "\xff"}}).error(), std::errc::illegal_byte_sequence);
  EXPECT_EQ(store.get<Dictionary>("Varnel.D"), (Dictionary{{"a", "b"}}));

  DefaultsFileStore nowhere("/proc/varnel/defaults");
  EXPECT_FALSE(nowhere.set("Varnel.D", true).has_value());
  EXPECT_EQ(nowhere.value("Varnel.D"), std::nullopt);
}

TEST_F(DefaultsFileStoreTest, SetsACorruptFileAsideAndGoesOn) {
  ASSERT_TRUE(open().set("Varnel.Other", true));
  const std::string whole = fileOf("data", "abcdef");
  const std::vector<std::string> corrupt{"",
                                         std::string(64, '\0'),
                                         whole.substr(0, whole.size() - 1),
                                         whole + "g",
                                         fileOf("odd", "abc"),
                                         fileOf("flag", "yes"),
                                         fileOf("dictionary", R"({"a":1.0})"),
                                         R"({"a":"b"})"};
  for (std::size_t i = 0; i < corrupt.size(); ++i) {
    overwrite("Varnel.Key", corrupt[i]);
    DefaultsFileStore store = open();
    if (i % 2 == 0) EXPECT_EQ(store.value("Varnel.Key"), std::nullopt) << corrupt[i];
    ASSERT_TRUE(store.set("Varnel.Key", std::string("new")));
    EXPECT_EQ(store.get<std::string>("Varnel.Key"), "new");
    EXPECT_EQ(store.get<bool>("Varnel.Other"), true);

    const std::string aside = i == 0 ? "Varnel.Key.corrupt" : "Varnel.Key.corrupt-" + std::to_string(i + 1);
    std::ifstream kept(folder / aside, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), corrupt[i]) << aside;
    ASSERT_EQ(warnings.size(), i + 1);
    EXPECT_NE(warnings.back().find(aside), std::string::npos) << warnings.back();
  }
}

TEST_F(DefaultsFileStoreTest, TakesTheValueBeforeWhenAPowerCutSpoiltTheLast) {
  ASSERT_TRUE(open().set("Varnel.Key", std::string("synced")));
  const fs::path previous = folder / ".Varnel.Key.old";
  EXPECT_FALSE(fs::exists(previous)) << "it has reached the disk";
  std::string last;
  {
    DefaultsFileStore store = open();
    ASSERT_TRUE(store.set("Varnel.Key", std::string("last")));
    std::ifstream file(folder / "Varnel.Key", std::ios::binary);
    last.assign(std::istreambuf_iterator<char>(file), {});
  }
  for (const std::string& spoilt : {std::string(), last.substr(0, last.size() - 1), std::string(last.size(), '\0'),
                                    last.substr(0, last.size() - 2) + std::string(2, '\0')}) {
    warnings.clear();
    ASSERT_TRUE(open().set("Varnel.Key", std::string("synced")));
    fs::create_hard_link(folder / "Varnel.Key", previous);
    fs::remove(folder / "Varnel.Key");
    overwrite("Varnel.Key", spoilt);
    EXPECT_EQ(open().get<std::string>("Varnel.Key"), "synced");
    EXPECT_EQ(warnings.size(), 1U);
    DefaultsFileStore store = open();
    ASSERT_TRUE(store.set("Varnel.Key", std::string("next")));
    EXPECT_EQ(store.get<std::string>("Varnel.Key"), "next");
  }
  EXPECT_FALSE(fs::exists(previous));
}

TEST_F(DefaultsFileStoreTest, SeesWhatAnotherStoreWrites) {
  DefaultsFileStore one = open();
  DefaultsFileStore other = open();
  ASSERT_TRUE(one.set("Varnel.Key", std::string("1")));
  EXPECT_EQ(other.get<std::string>("Varnel.Key"), "1");
  ASSERT_TRUE(one.set("Varnel.Key", std::string("2")));
  EXPECT_EQ(other.get<std::string>("Varnel.Key"), "2");
  ASSERT_TRUE(one.remove("Varnel.Key"));
  EXPECT_EQ(other.value("Varnel.Key"), std::nullopt);
}

/// Runs `work` in a process of its own.
template <class Work>
pid_t inChild(Work work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    ::_exit(0);
  }
  return child;
}

TEST_F(DefaultsFileStoreTest, ProcessesThatWriteAtOnceLoseNoKeys) {
  constexpr int kWriters = 3;
  constexpr int kKeys = 40;
  std::vector<pid_t> children;
  for (int writer = 0; writer < kWriters; ++writer) {
    children.push_back(inChild([&] {
      DefaultsFileStore store(folder);
      for (int i = 0; i < kKeys; ++i) {
        const std::string key = "Varnel." + std::to_string(writer) + "." + std::to_string(i);
        if (!store.set(key, std::to_string(i)) || !store.set("Varnel.Shared", key)) ::_exit(1);
      }
    }));
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  DefaultsFileStore store = open();
  for (int writer = 0; writer < kWriters; ++writer) {
    for (int i = 0; i < kKeys; ++i) {
      EXPECT_EQ(store.get<std::string>("Varnel." + std::to_string(writer) + "." + std::to_string(i)),
                std::to_string(i));
    }
  }
  EXPECT_TRUE(store.get<std::string>("Varnel.Shared").has_value());
  EXPECT_TRUE(warnings.empty());
}

constexpr std::uint32_t kKillKeys = 3;

std::string killKey(std::uint32_t number) {
  return "Varnel.Key" + std::to_string(number % kKillKeys);
}

/// A value of about 8 KB that says what it is.
Dictionary killValue(std::uint32_t number) {
  return {{"number", std::to_string(number)}, {"ballast", std::string(8000, static_cast<char>('a' + number % 26))}};
}

/// Stores one number after the other and says each that was acknowledged, until it is killed.
[[noreturn]] void writeUntilKilled(const fs::path& folder, int acknowledge) {
  DefaultsFileStore store(folder);
  for (std::uint32_t number = 1;; ++number) {
    if (!store.set(killKey(number), killValue(number))) ::_exit(1);
    if (::write(acknowledge, &number, sizeof number) != sizeof number) ::_exit(2);
  }
}

TEST_F(DefaultsFileStoreTest, AKillAtAnyMomentLosesNothingAcknowledged) {
  std::mt19937 random(20260101);
  for (int round = 0; round < 200; ++round) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const pid_t child = inChild([&] { writeUntilKilled(folder, pipe[1]); });
    ::close(pipe[1]);
    // So many writes, and a part of the next.
    std::uint32_t acknowledged = 0;
    const std::uint32_t wanted = 1 + random() % 6;
    while (acknowledged < wanted && ::read(pipe[0], &acknowledged, sizeof acknowledged) == sizeof acknowledged) {
    }
    const timespec moment{.tv_sec = 0, .tv_nsec = static_cast<long>(random() % 1'500'000)};
    ::nanosleep(&moment, nullptr);
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself: " << status;
    while (::read(pipe[0], &acknowledged, sizeof acknowledged) == sizeof acknowledged) {
    }
    ::close(pipe[0]);

    const DefaultsFileStore store = open();
    for (std::uint32_t key = 0; key < std::min(acknowledged, kKillKeys); ++key) {
      const std::uint32_t last = acknowledged - key;
      const auto found = store.get<Dictionary>(killKey(last));
      ASSERT_TRUE(found.has_value()) << "round " << round;
      const auto number = static_cast<std::uint32_t>(std::stoul(found->at("number")));
      EXPECT_EQ(*found, killValue(number));
      // The one after the last acknowledged may have been stored, its acknowledgement not.
      EXPECT_TRUE(number == last || number == acknowledged + 1) << number << " instead of " << last;
    }
    fs::remove_all(folder);
  }
  EXPECT_TRUE(warnings.empty());
}

}  // namespace
}  // namespace varnel::platform
