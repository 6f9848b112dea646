// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <malloc.h>

#include <random>

#include "core/json/text.h"
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

/// A bridge with a state of its own, whose connections end at random bytes for as long as there are cuts left.
class World {
 public:
  World(FakeBridge& bridge, unsigned seed) : m_bridge(bridge), m_random(seed) {
    bridge.answerBy([this](const SeenRequest& request) { return answer(request); });
  }

  int cutsLeft = 0;
  bool cutsStreams = true;

  [[nodiscard]] std::size_t events() const { return m_events.size(); }
  [[nodiscard]] const std::vector<std::string>& items(const std::string& sessionId) { return m_ids[sessionId]; }
  [[nodiscard]] std::size_t below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
  }

  /// The agent says something, and the phone is told.
  void reply(const std::string& sessionId, double now) {
    add(sessionId, "assistant", "reply", now);
    tell("item.completed", sessionId);
  }
  void tell(const std::string& type, const std::optional<std::string>& sessionId) {
    m_events.push_back(answers::event(static_cast<int>(m_events.size()) + 1, type, sessionId));
    if (m_bridge.openStreams() == 0) return;
    if (cutsStreams && takesCut()) {
      m_bridge.injectCut(m_events.back(), below(m_events.back().size() + 2), ending());
    } else {
      m_bridge.inject(m_events.back());
    }
  }

 private:
  using SeenRequest = support::SeenRequest;

  bool takesCut() {
    if (cutsLeft == 0 || below(3) != 0) return false;
    --cutsLeft;
    return true;
  }
  Script::Then ending() { return below(2) == 0 ? Script::Then::Close : Script::Then::Reset; }

  void add(const std::string& sessionId, const std::string& role, const std::string& text, double now) {
    const auto id = role + std::to_string(++m_lastItem);
    m_ids[sessionId].push_back(id);
    m_items[sessionId].push_back(answers::item(id, role, text, now));
  }

  Script answer(const SeenRequest& request) {
    Script script = whole(request);
    const bool isStream = script.stream.has_value();
    std::size_t size = script.bytes.size();
    if (isStream) size = 160;  // within the upgrade or, more often, behind it
    for (const auto& message : script.stream.value_or(std::vector<std::string>())) size += message.size() + 2;
    if ((!isStream || cutsStreams) && takesCut()) {
      script.cutAfter = below(size);
      script.then = ending();
    }
    return script;
  }

  Script whole(const SeenRequest& request) {
    const std::string path = request.target.substr(0, request.target.find('?'));
    if (path == "/v1/events") {
      const auto after = std::stoul(request.target.substr(std::string("/v1/events?after=").size()));
      return Script::acceptStream({m_events.begin() + static_cast<std::ptrdiff_t>(after), m_events.end()});
    }
    if (path == kSessions) return Script::json(200, answers::sessions({answers::summary("a"), answers::summary("s")}));
    if (path == kProjects) return Script::json(200, answers::projects("/p"));
    if (path == kModels) return Script::json(200, answers::models("m"));
    if (path == kUsage) return Script::json(200, answers::usage(1));
    if (path == kRateLimit) return Script::json(200, "{}");
    if (path == kMessages) {
      const auto body = json::parse(request.body);
      add("s", "user", *body->member("text")->string(), 1000);
      m_toTell = true;
      return Script::json(200, "{}");
    }
    return Script::json(200, answers::detail(m_items[path.substr(path.rfind('/') + 1)]));
  }

 public:
  /// Events of what the phone did itself come after the answer to it.
  void tellOfMessages() {
    if (std::exchange(m_toTell, false)) tell("item.completed", "s");
  }

 private:
  FakeBridge& m_bridge;
  std::mt19937 m_random;
  std::vector<std::string> m_events;
  std::map<std::string, std::vector<std::string>> m_items;
  std::map<std::string, std::vector<std::string>> m_ids;
  int m_lastItem = 0;
  bool m_toTell = false;
};

class Endurance : public ModelTest {
 protected:
  World world{bridge, 20'261'123};
  std::vector<std::int64_t> applied;  ///< the numbers of the events, in the order they were handled

  void start(Surroundings surroundings) {
    surroundings.liveActivities.apply = [this](const auto& event) -> client::Task<void> {
      return noteNumber(event.sequence);
    };
    model = std::make_unique<AppModel>(std::move(surroundings));
    model->start();
  }
  client::Task<void> noteNumber(std::int64_t sequence) {
    applied.push_back(sequence);
    co_return;
  }

  /// The world goes on, messages are sent and connections end until there are no cuts left.
  void suffer() {
    const QDeadlineTimer deadline(std::chrono::seconds(60));
    int sent = 0;
    while (world.cutsLeft > 0 && !deadline.hasExpired()) {
      if (world.below(4) == 0) world.reply(world.below(2) == 0 ? "a" : "s", clock->now);
      if (world.below(20) == 0) send("message " + std::to_string(++sent));
      world.tellOfMessages();
      if (clock->isSleeping()) clock->wake();
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1);
    }
    ASSERT_EQ(world.cutsLeft, 0);
  }
  /// Once all is well again, and something has happened everywhere.
  void expectSameState() {
    world.tellOfMessages();
    world.reply("a", clock->now);
    world.reply("s", clock->now);
    ASSERT_TRUE(spinUntil([this] {
      if (clock->isSleeping()) clock->wake();
      return applied.size() >= world.events() && model->isConnected() && !isLoading();
    })) << applied.size()
        << " of " << world.events();
    ASSERT_EQ(applied.size(), world.events());
    for (std::size_t i = 0; i < applied.size(); ++i) ASSERT_EQ(applied[i], static_cast<std::int64_t>(i) + 1);
    EXPECT_EQ(model->lastSequence(), static_cast<std::int64_t>(world.events()));
    EXPECT_EQ(idsOf("a"), world.items("a"));
    EXPECT_EQ(idsOf("s"), world.items("s"));
  }

 private:
  [[nodiscard]] bool isLoading() { return idsOf("a") != world.items("a") || idsOf("s") != world.items("s"); }
  [[nodiscard]] std::vector<std::string> idsOf(const std::string& sessionId) const {
    std::vector<std::string> ids;
    for (const auto& item : model->transcript(sessionId)) ids.push_back(item.id);
    return ids;
  }
};

TEST_F(Endurance, AThousandConnectionsThatEndAtAnyByteLoseAndDoubleNothing) {
  stored = credentials();
  world.cutsLeft = 1000;
  start(surroundings());
  suffer();
  expectSameState();
  EXPECT_GT(clock->sleeps.size(), 300U) << "many of them were streams";
  EXPECT_EQ(std::ranges::count(clock->sleeps, 1), std::ssize(clock->sleeps));
}

TEST_F(Endurance, TwentyOnTheRealClock) {
  stored = credentials();
  auto real = surroundings();
  real.clock.sleep = client::sleepFor;
  start(std::move(real));
  for (int i = 0; i < 10; ++i) {
    ASSERT_TRUE(spinUntil([this] { return model->isConnected(); }));
    world.cutsStreams = false;
    world.cutsLeft = 1;
    const QDeadlineTimer deadline(std::chrono::seconds(10));
    while (world.cutsLeft > 0 && !deadline.hasExpired()) {
      world.reply("s", 1000);
      support::spinFor(5ms);
    }
    world.cutsStreams = true;
    world.cutsLeft = 1;
    while (world.cutsLeft > 0 && !deadline.hasExpired()) {
      world.tell("nothing", std::nullopt);
      support::spinFor(5ms);
    }
    ASSERT_EQ(world.cutsLeft, 0);
    ASSERT_TRUE(spinUntil([this] { return !model->isConnected(); }));
  }
  expectSameState();
}

/// Bytes that are allocated and in use.
std::size_t inUse() {
  const auto info = ::mallinfo2();
  return info.uordblks + info.hblkhd;
}

TEST_F(Endurance, ADayLeavesNothingBehind) {
  stored = credentials();
  start(surroundings());
  ASSERT_TRUE(spinUntil([this] { return model->isConnected() && model->usage(); }));
  std::size_t before = 0;
  constexpr int kMinutes = 24 * 60;
  for (int minute = 0; minute < kMinutes; ++minute) {
    clock->now += 60;
    world.tell(minute % 10 == 0 ? "usage.updated" : "item.completed", "s");
    if (minute % 30 == 0) bridge.closeStreams();
    ASSERT_TRUE(spinUntil([this] {
      if (clock->isSleeping()) clock->wake();
      return applied.size() == world.events() && model->isConnected();
    }));
    bridge.forgetRequests();
    log.clear();
    announced.clear();
    if (minute == kMinutes / 4) before = inUse();
  }
  settle();
  EXPECT_EQ(bridge.openStreams(), 1);
  EXPECT_EQ(bridge.openConnections(), 1) << "nothing is under way";
  EXPECT_LT(inUse(), before + (std::size_t{512} << 10));
}

TEST_F(Endurance, ABurstOfEventsIsHandledInOrderWithinBoundedMemory) {
  stored = credentials();
  start(surroundings());
  ASSERT_TRUE(spinUntil([this] { return model->isConnected() && model->usage(); }));
  constexpr int kEvents = 10'000;
  applied.reserve(kEvents);
  std::string burst;
  for (int sequence = 1; sequence <= kEvents; ++sequence) {
    burst += FakeBridge::frameOf(answers::event(sequence, "item.completed"));
  }
  const auto before = inUse();
  bridge.injectRaw(burst);
  std::size_t most = 0;
  ASSERT_TRUE(spinUntil([&] {
    most = std::max(most, inUse());
    return applied.size() == kEvents;
  }));
  EXPECT_TRUE(std::ranges::is_sorted(applied));
  EXPECT_EQ(model->lastSequence(), kEvents);
  EXPECT_LT(most, before + burst.capacity() + (std::size_t{8} << 20)) << "beside the bridge's own copy";
}

}  // namespace
}  // namespace varnel::model
