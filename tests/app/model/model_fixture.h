// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <vector>

#include "app/client/api_client.h"
#include "app/client/async.h"
#include "app/model/app_model.h"
#include "app/platform/defaults_store_memory.h"
#include "tests/support/fake_bridge.h"
#include "tests/support/waiting.h"

namespace varnel::model {

using support::await;
using support::FakeBridge;
using support::Script;
using support::spinUntil;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using namespace std::chrono_literals;

inline constexpr const char* kSessions = "/v1/sessions";
inline constexpr const char* kProjects = "/v1/projects";
inline constexpr const char* kModels = "/v1/models";
inline constexpr const char* kUsage = "/v1/usage";
inline constexpr const char* kRateLimit = "/v1/rate-limit";
inline constexpr const char* kDetail = "/v1/sessions/s";
inline constexpr const char* kMessages = "/v1/sessions/s/messages";
inline constexpr const char* kGoal = "/v1/sessions/s/goal";
inline constexpr const char* kName = "/v1/sessions/s/name";
inline constexpr const char* kArchive = "/v1/sessions/s/archive";
inline constexpr const char* kUnarchive = "/v1/sessions/s/unarchive";
inline constexpr const char* kArchived = "/v1/sessions/archived";
inline constexpr const char* kSearch = "/v1/search?q=q";
inline constexpr const char* kTracking = "/v1/tracking";
inline constexpr const char* kClaim = "/v1/pair/claim";

/// The records that the scripts answer with.
namespace answers {
std::string summary(const std::string& id, const std::string& commentary = "");
std::string sessions(const std::vector<std::string>& summaries);
std::string projects(const std::string& path);
std::string models(const std::string& id);
std::string usage(int usedPercent);
std::string item(const std::string& id, const std::string& role, const std::string& text, double timestamp = 1000);
std::string detail(const std::vector<std::string>& items, const std::string& more = "");
std::string archived(const std::vector<std::string>& ids, const std::string& nextCursor = "");
std::string found(const std::vector<std::string>& ids, const std::string& nextCursor = "");
std::string event(int sequence, const std::string& type, const std::optional<std::string>& sessionId = std::nullopt);
std::string code(int version, const std::string& baseURL);
}  // namespace answers

/// A clock that moves, and whose sleepers wake, when the test says so.
struct FakeClock {
  double now = 1000;
  std::vector<long> sleeps;  ///< seconds, of every sleep that began
  client::Gate* sleeper = nullptr;

  [[nodiscard]] bool isSleeping() const { return sleeper != nullptr; }
  void wake() const { sleeper->open(); }
};

class CountingDefaults : public platform::MemoryDefaultsStore {
 public:
  std::expected<void, std::error_code> set(std::string_view key, const platform::DefaultsValue& value) override {
    ++m_writes;
    return MemoryDefaultsStore::set(key, value);
  }
  [[nodiscard]] int writes() const { return m_writes; }

 private:
  int m_writes = 0;
};

/// A model on a scripted bridge, with a keyring in memory and everything it publishes written down.
class ModelTest : public testing::Test {
 public:
  ~ModelTest() override;

 protected:
  ModelTest();

  FakeBridge bridge;
  std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
  std::optional<wire::PairingCredentials> stored;
  std::optional<QString> saveFailure;
  std::shared_ptr<CountingDefaults> defaults = std::make_shared<CountingDefaults>();
  std::vector<std::string> log;      ///< requests that reached the bridge, calls of services and changes, in order
  int restored = 0;                  ///< how often the live activity was taken up
  client::Gate* applying = nullptr;  ///< what the live activity waits at before it is done with an event
  std::vector<live::ConversationsNow> announced;
  bool inForeground = true;
  std::unique_ptr<AppModel> model;

  [[nodiscard]] wire::PairingCredentials credentials(const std::string& token = "t") const;
  [[nodiscard]] Surroundings surroundings();
  /// Makes the model, paired or not.
  void makePaired();
  void makeUnpaired();
  /// A paired model that is started, refreshed and connected, with the log emptied.
  void makeConnected();
  void destroyModel();

  void expectGet(const std::string& target, const std::string& body);
  void expectLists(const std::string& sessionId = "s");
  void expectFullRefresh(const std::string& sessionId = "s");
  void expectStream(int after, std::vector<std::string> first = {});
  [[nodiscard]] static std::string streamTarget(int after);

  [[nodiscard]] std::vector<std::string> requests() const;
  [[nodiscard]] std::vector<std::string> logged(std::size_t first, std::size_t count) const {
    const auto part = log | std::views::drop(first) | std::views::take(count);
    return {part.begin(), part.end()};
  }
  [[nodiscard]] bool seen(const std::string& entry) const { return std::ranges::find(log, entry) != log.end(); }
  [[nodiscard]] bool waitFor(const std::string& entry) const;
  /// Gives everything that is under way the time to show, to see that nothing comes.
  static void settle() { support::spinFor(60ms); }
  [[nodiscard]] std::vector<std::string> transcriptIds() const;
  [[nodiscard]] std::vector<std::string> sessionIds() const;
  QCoro::Task<bool> send(const std::string& text, bool asGoal = false);
  [[nodiscard]] static wire::ConversationPreferences preferencesOf(const std::string& model);

 private:
  void watch();
  [[nodiscard]] client::Task<void> note(std::string entry);
  [[nodiscard]] client::Task<void> apply(wire::LiveEvent event);
};

}  // namespace varnel::model
