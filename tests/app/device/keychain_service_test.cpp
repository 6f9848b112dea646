// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Each suite below belongs to one mode of tests/support/with_keyring.sh and is run in that mode only.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "app/device/keychain_store.h"
#include "tests/support/temporary_directory.h"

namespace varnel::device {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Not;
using wire::PairingCredentials;
using Clock = std::chrono::steady_clock;

namespace fs = std::filesystem;

PairingCredentials pairing(const std::string& token) {
  return {.baseURL = base::Url::parse("https://bridge.example/below").value(), .deviceId = "device-1", .token = token};
}

/// What the command writes, standard error included.
std::string outputOf(const std::string& command) {
  std::string output;
  std::FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
  std::array<char, 256> block{};
  while (std::fgets(block.data(), block.size(), pipe) != nullptr) output += block.data();
  ::pclose(pipe);
  return output;
}

/// What another program finds under our attributes.
std::string itemsSeenFromOutside() {
  return outputOf("timeout 10 secret-tool search --all service org.varnel.Varnel account bridge-pairing");
}

std::size_t count(const std::string& text, std::string_view piece) {
  std::size_t found = 0;
  for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++found;
  return found;
}

void setLocked(bool locked) {
  const std::string command = std::string("/usr/bin/python3 ") + std::getenv("LOGIN_KEYRING");
  ASSERT_EQ(outputOf(command + (locked ? " lock" : " unlock")), "");
}

/// The store, with the time of its slowest call.
class TimedStore {
 public:
  explicit TimedStore(const fs::path& directory) : m_store(directory) {}

  std::expected<void, KeychainFailure> save(const PairingCredentials& credentials) {
    const Measure measure(m_slowest);
    return m_store.save(credentials);
  }
  std::expected<std::optional<PairingCredentials>, KeychainFailure> load() {
    const Measure measure(m_slowest);
    return m_store.load();
  }
  void remove() {
    const Measure measure(m_slowest);
    m_store.remove();
  }
  [[nodiscard]] Clock::duration slowest() const { return m_slowest; }

 private:
  class Measure {
   public:
    explicit Measure(Clock::duration& slowest) : m_slowest(slowest) {}
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;
    ~Measure() { m_slowest = std::max(m_slowest, Clock::now() - m_begin); }

   private:
    Clock::duration& m_slowest;
    Clock::time_point m_begin = Clock::now();
  };

  KeychainStore m_store;
  Clock::duration m_slowest{};
};

class KeychainOnBus : public ::testing::Test {
 protected:
  /// A prompt, which nobody answers here, would take all the time that there is.
  void TearDown() override { EXPECT_LT(m_store.slowest(), m_limit); }

  [[nodiscard]] fs::path pairingFile() const { return m_directory.path() / "own" / "bridge-pairing.json"; }

  testing::TemporaryDirectory m_directory;
  TimedStore m_store{m_directory.path() / "own"};
  std::chrono::milliseconds m_limit{1400};
};

using Unlocked = KeychainOnBus;

TEST_F(Unlocked, KeepsOneItemThatOthersCanFind) {
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  ASSERT_TRUE(m_store.save(pairing("first-token")));
  ASSERT_TRUE(m_store.save(pairing("second-token")));
  EXPECT_EQ(m_store.load().value(), pairing("second-token"));
  const std::string seen = itemsSeenFromOutside();
  EXPECT_EQ(count(seen, "second-token"), 1U) << seen;
  EXPECT_EQ(count(seen, "secret = "), 1U) << seen;
  EXPECT_FALSE(fs::exists(pairingFile()));

  m_store.remove();
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  EXPECT_THAT(itemsSeenFromOutside(), Not(HasSubstr("secret = ")));
  m_store.remove();
}

TEST_F(Unlocked, TakesAnItemThatSomebodyElseStored) {
  outputOf("printf nonsense | secret-tool store --label=x service org.varnel.Varnel account bridge-pairing");
  const auto loaded = m_store.load();
  ASSERT_FALSE(loaded);
  EXPECT_TRUE(std::holds_alternative<json::DecodeError>(loaded.error())) << message(loaded.error());
  ASSERT_TRUE(m_store.save(pairing("ours")));
  EXPECT_EQ(m_store.load().value(), pairing("ours"));
  EXPECT_EQ(count(itemsSeenFromOutside(), "secret = "), 1U);
  m_store.remove();
}

TEST_F(Unlocked, TellsALockedPairingFromNone) {
  setLocked(true);
  EXPECT_EQ(m_store.load().value(), std::nullopt) << "nothing was ever stored";
  setLocked(false);
  ASSERT_TRUE(m_store.save(pairing("first")));
  setLocked(true);
  const auto locked = m_store.load();
  ASSERT_FALSE(locked);
  EXPECT_EQ(message(locked.error()), "Keychain error 2");
  setLocked(false);
  EXPECT_EQ(m_store.load().value(), pairing("first"));
  m_store.remove();
}

TEST_F(Unlocked, LosesNoPairingWhileLocked) {
  ASSERT_TRUE(m_store.save(pairing("first")));
  setLocked(true);
  ASSERT_TRUE(m_store.save(pairing("second")));
  EXPECT_TRUE(fs::exists(pairingFile()));
  EXPECT_EQ(m_store.load().value(), pairing("second"));
  setLocked(false);
  EXPECT_EQ(m_store.load().value(), pairing("second"));
  EXPECT_THAT(itemsSeenFromOutside(), Not(HasSubstr("secret = ")));

  ASSERT_TRUE(m_store.save(pairing("third")));
  EXPECT_FALSE(fs::exists(pairingFile()));
  setLocked(true);
  m_store.remove();
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  setLocked(false);
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  EXPECT_THAT(itemsSeenFromOutside(), Not(HasSubstr("secret = ")));
}

using Blank = KeychainOnBus;

TEST_F(Blank, OpensAKeyringThatAsksNothing) {
  ASSERT_TRUE(m_store.save(pairing("first")));
  EXPECT_FALSE(fs::exists(pairingFile()));
  setLocked(true);
  EXPECT_EQ(m_store.load().value(), pairing("first"));
  setLocked(true);
  ASSERT_TRUE(m_store.save(pairing("second")));
  EXPECT_FALSE(fs::exists(pairingFile()));
  setLocked(true);
  m_store.remove();
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  EXPECT_EQ(outputOf("ls " + pairingFile().parent_path().string()), "") << "removed at once, nothing left to do";
}

using Fresh = KeychainOnBus;

TEST_F(Fresh, AsksNobodyToMakeAKeyring) {
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  ASSERT_TRUE(m_store.save(pairing("first")));
  EXPECT_TRUE(fs::exists(pairingFile()));
  EXPECT_EQ(m_store.load().value(), pairing("first"));
  m_store.remove();
  EXPECT_EQ(m_store.load().value(), std::nullopt);
}

/// A bus without services, or none at all.
using Absent = KeychainOnBus;

mode_t modeOf(const fs::path& path) {
  struct stat status{};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

TEST_F(Absent, KeepsThePairingInAPrivateFile) {
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  fs::create_directory(pairingFile().parent_path());
  fs::permissions(pairingFile().parent_path(), fs::perms(0755));
  ASSERT_TRUE(m_store.save(pairing("first")));
  ASSERT_TRUE(m_store.save(pairing("second")));
  EXPECT_EQ(modeOf(pairingFile()), 0600U);
  EXPECT_EQ(modeOf(pairingFile().parent_path()), 0700U);

  fs::permissions(pairingFile(), fs::perms(0644));
  EXPECT_EQ(m_store.load().value(), pairing("second"));
  EXPECT_EQ(modeOf(pairingFile()), 0600U);
  std::ofstream(pairingFile()) << "{";
  EXPECT_TRUE(std::holds_alternative<json::DecodeError>(m_store.load().error()));

  m_store.remove();
  EXPECT_EQ(m_store.load().value(), std::nullopt);
  m_store.remove();
}

TEST_F(Absent, SaysWhyTheFileCannotBeWritten) {
  const fs::path file = m_directory.path() / "file";
  std::ofstream(file) << "in the way";
  KeychainStore store(file);
  EXPECT_EQ(message(store.save(pairing("first")).error()), "Keychain error 20");
  EXPECT_EQ(message(store.load().error()), "Keychain error 20");
  store.remove();
}

class Hanging : public KeychainOnBus {
 protected:
  void SetUp() override { m_limit = 2500ms; }

  void expectThatNothingIsLost() {
    const auto loaded = m_store.load();
    ASSERT_FALSE(loaded);
    EXPECT_EQ(message(loaded.error()), "Keychain error 110");
    EXPECT_GE(m_store.slowest(), 1900ms);

    ASSERT_TRUE(m_store.save(pairing("first")));
    EXPECT_EQ(m_store.load().value(), pairing("first"));
    m_store.remove();
  }
};

TEST_F(Hanging, ServiceHoldsNobodyUp) {
  expectThatNothingIsLost();
}

TEST_F(Hanging, BusHoldsNobodyUp) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = (m_directory.path() / "bus").string();
  ASSERT_LT(path.size(), sizeof(address.sun_path));
  std::ranges::copy(path, address.sun_path);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
  ASSERT_EQ(::listen(socket, 16), 0);  // never accepted, so never answered
  const std::string before = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
  expectThatNothingIsLost();
  ::setenv("DBUS_SESSION_BUS_ADDRESS", before.c_str(), 1);
  ::close(socket);
}

// Without the fixture, whose folder the program that ends would leave behind.
TEST(HangingProgram, EndsWithoutDelay) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto begin = Clock::now();
  EXPECT_EXIT(
      {
        const auto loaded = KeychainStore("/never/made").load();
        std::exit(!loaded && message(loaded.error()) == "Keychain error 110" ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
  EXPECT_LT(Clock::now() - begin, 3500ms);
}

}  // namespace
}  // namespace varnel::device
