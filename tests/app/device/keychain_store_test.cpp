// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/keychain_store.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <csignal>
#include <fstream>
#include <mutex>
#include <random>

#include "app/platform/secret_store_file.h"
#include "tests/support/temporary_directory.h"

namespace varnel::device {
namespace {

using namespace std::chrono_literals;
using platform::SecretError;
using platform::SecretResult;
using wire::PairingCredentials;
using Clock = std::chrono::steady_clock;

constexpr SecretError kAbsent{.status = 2, .storeIsAbsent = true};
constexpr SecretError kLocked{.status = 2};
constexpr SecretError kFull{.status = ENOSPC};

/// Keeps its secret in memory; fails, or answers nothing until it is stopped, when told to.
class FakeStore : public platform::SecretStore {
 public:
  SecretResult<void> save(std::string secret, std::stop_token token) override {
    if (auto error = obstacle(std::move(token))) return std::unexpected(*error);
    content = std::move(secret);
    return {};
  }
  SecretResult<std::optional<std::string>> load(std::stop_token token) override {
    if (auto error = obstacle(std::move(token))) return std::unexpected(*error);
    return content;
  }
  SecretResult<void> remove(std::stop_token token) override {
    if (auto error = obstacle(std::move(token))) return std::unexpected(*error);
    content.reset();
    return {};
  }

  std::optional<std::string> content;
  std::optional<SecretError> failure;
  bool hangs = false;

 private:
  std::optional<SecretError> obstacle(std::stop_token token) {
    if (!hangs) return failure;
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any().wait(lock, std::move(token), [] { return false; });
    return SecretError{.status = ECANCELED};
  }
};

PairingCredentials pairing(const std::string& token) {
  return {.baseURL = base::Url::parse("http://10.0.0.2:8080/bridge").value(), .deviceId = "device-1", .token = token};
}

std::string textOf(const std::string& token) {
  return R"({"token":")" + token + R"(","baseURL":"http:\/\/10.0.0.2:8080\/bridge","deviceId":"device-1"})";
}

class KeychainStoreTest : public ::testing::Test {
 protected:
  std::shared_ptr<FakeStore> m_service = std::make_shared<FakeStore>();
  std::shared_ptr<FakeStore> m_file = std::make_shared<FakeStore>();
  std::shared_ptr<FakeStore> m_outdated = std::make_shared<FakeStore>();
  KeychainStore m_store{KeychainStore::Stores{.service = m_service, .file = m_file, .outdated = m_outdated}};
};

TEST_F(KeychainStoreTest, KeepsOnePairingInTheServiceAndClearsTheFile) {
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  m_file->content = textOf("old");
  ASSERT_TRUE(m_store.save(pairing("first")));
  EXPECT_EQ(m_file->content, std::nullopt);
  ASSERT_TRUE(m_store.save(pairing("second")));
  EXPECT_EQ(m_store.load().value(), pairing("second"));

  m_file->content = textOf("third");
  EXPECT_EQ(m_store.load().value(), pairing("second")) << "the service comes first";
  m_service->content.reset();
  EXPECT_EQ(m_store.load().value(), pairing("third"));

  m_store.remove();
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  EXPECT_EQ(m_file->content, std::nullopt);
  EXPECT_EQ(m_outdated->content, std::nullopt);
  m_store.remove();
}

TEST_F(KeychainStoreTest, SavesInTheFileWhateverKeepsTheServiceFromIt) {
  for (const SecretError error : {kAbsent, kLocked, SecretError{.status = 1}}) {
    m_service->content = textOf("old");
    m_service->failure = error;
    ASSERT_TRUE(m_store.save(pairing("new")));
    EXPECT_EQ(m_store.load().value(), pairing("new"));

    m_service->failure.reset();
    EXPECT_EQ(m_store.load().value(), pairing("new")) << "the service's old pairing came back";
    EXPECT_EQ(m_service->content, std::nullopt);
    EXPECT_EQ(m_outdated->content, std::nullopt);

    ASSERT_TRUE(m_store.save(pairing("newer")));
    EXPECT_EQ(m_file->content, std::nullopt);
    EXPECT_EQ(m_store.load().value(), pairing("newer"));
  }
}

TEST_F(KeychainStoreTest, SavingInTheServiceLiftsTheMark) {
  m_service->failure = kLocked;
  ASSERT_TRUE(m_store.save(pairing("in the file")));
  m_service->failure.reset();
  ASSERT_TRUE(m_store.save(pairing("in the service")));
  EXPECT_EQ(m_store.load().value(), pairing("in the service"));
  EXPECT_EQ(m_file->content, std::nullopt);
}

TEST_F(KeychainStoreTest, RemovesForGoodWhatIsLockedAway) {
  m_service->content = textOf("locked away");
  m_service->failure = kLocked;
  m_store.remove();
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  m_service->failure.reset();
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  EXPECT_EQ(m_service->content, std::nullopt);
}

TEST_F(KeychainStoreTest, TellsNoPairingFromOneThatIsOutOfReach) {
  m_service->failure = kAbsent;
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  m_service->failure = kLocked;
  EXPECT_EQ(m_store.load().error(), KeychainFailure(KeychainError{2}));
  m_file->content = textOf("in the file");
  EXPECT_EQ(m_store.load().value(), pairing("in the file"));

  m_service->failure.reset();
  m_file->failure = SecretError{.status = EACCES};
  const auto unreadable = m_store.load();
  ASSERT_FALSE(unreadable);
  EXPECT_EQ(message(unreadable.error()), "Keychain error 13");
  EXPECT_EQ(KeychainError{-34018}.message(), "Keychain error -34018");
}

TEST_F(KeychainStoreTest, FailsToSaveWhenTheFileWouldNotLast) {
  m_service->failure = kLocked;
  m_file->failure = kFull;
  EXPECT_EQ(m_store.save(pairing("new")).error(), KeychainFailure(KeychainError{ENOSPC}));
  m_file->failure.reset();
  m_outdated->failure = kFull;
  EXPECT_FALSE(m_store.save(pairing("new"))) << "the service's old pairing would overrule it";
  m_store.remove();

  const PairingCredentials notText{.baseURL = pairing("").baseURL, .deviceId = "\xff", .token = "t"};
  m_service->failure.reset();
  m_service->content = textOf("old");
  const auto failed = m_store.save(notText);
  ASSERT_FALSE(failed);
  EXPECT_TRUE(std::holds_alternative<json::DecodeError>(failed.error()));
  EXPECT_EQ(m_service->content, textOf("old"));
}

TEST_F(KeychainStoreTest, GivesTheDecodersErrorWithoutTheToken) {
  const std::string secret = "s3cr3t-t0k3n";
  struct Case {
    std::string stored;
    std::string expected;
  };
  const std::array<Case, 4> cases{{
      {R"({"baseURL":"http://h","token":")" + secret + R"("})", "deviceId"},
      {R"({"baseURL":"http://h","deviceId":1,"token":")" + secret + R"("})", "deviceId"},
      {R"({"baseURL":")" + secret + R"( no URL","deviceId":"d","token":")" + secret + R"("})", "baseURL"},
      {R"({"baseURL":"http://h","deviceId":"d","token":")" + secret, "token"},
  }};
  for (const Case& entry : cases) {
    for (FakeStore* holder : {m_service.get(), m_file.get()}) {
      m_service->content.reset();
      m_file->content.reset();
      holder->content = entry.stored;
      const auto loaded = m_store.load();
      ASSERT_FALSE(loaded);
      ASSERT_TRUE(std::holds_alternative<json::DecodeError>(loaded.error())) << message(loaded.error());
      EXPECT_EQ(std::get<json::DecodeError>(loaded.error()).path, entry.expected);
      EXPECT_EQ(message(loaded.error()).find(secret), std::string::npos) << message(loaded.error());
    }
  }
}

TEST_F(KeychainStoreTest, IsHeldTwoSecondsAtMostWhenNothingAnswers) {
  m_service->hangs = true;
  const auto timed = [](auto operation) {
    const auto begin = Clock::now();
    operation();
    return Clock::now() - begin;
  };
  m_file->hangs = true;
  EXPECT_LT(timed([&] { EXPECT_EQ(m_store.save(pairing("x")).error(), KeychainFailure(KeychainError{110})); }), 2500ms);
  EXPECT_LT(timed([&] { m_store.remove(); }), 2500ms);
}

/// The store as it is on a system without a Secret Service, with real files.
KeychainStore storeOnFiles(const std::filesystem::path& directory) {
  const auto absent = std::make_shared<FakeStore>();
  absent->failure = kAbsent;
  return KeychainStore({.service = absent,
                        .file = std::make_shared<platform::SecretFileStore>(directory / "pairing"),
                        .outdated = std::make_shared<platform::SecretFileStore>(directory / "outdated")});
}

TEST(KeychainStoreOnFilesTest, SurvivesAKillWhileSaving) {
  const testing::TemporaryDirectory directory;
  KeychainStore store = storeOnFiles(directory.path());
  const std::array<PairingCredentials, 2> pairings{pairing(std::string(50'000, 'a')),
                                                   pairing(std::string(90'000, 'b'))};
  ASSERT_TRUE(store.save(pairings[0]));
  std::mt19937 random(2026);
  std::size_t secondSeen = 0;
  for (int kill = 0; kill < 50; ++kill) {
    const pid_t child = ::fork();
    if (child == 0) {
      for (std::size_t round = 1; store.save(pairings[round % 2]); ++round) {
      }
      ::_exit(1);
    }
    ::usleep(random() % 25'000);  // the moment of the kill is what varies here
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child could not save";

    const auto loaded = store.load();
    ASSERT_TRUE(loaded) << message(loaded.error());
    ASSERT_TRUE(*loaded == pairings[0] || *loaded == pairings[1]);
    secondSeen += *loaded == pairings[1] ? 1 : 0;
  }
  EXPECT_GT(secondSeen, 0U) << "no child came as far as saving";
}

}  // namespace
}  // namespace varnel::device
