// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// The event stream: what is resumed, what is told anew, and when it ends.
#include <gmock/gmock.h>

#include <future>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "core/wire/event.h"
#include "tests/support/http_client.h"
#include "tests/support/running_bridge.h"

namespace varnel::http {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = agent::Change::Kind;
using support::EventClient;
using support::RunningBridge;

class EventsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    bridge.run([](auto parts) {
      const double now = parts.bridge.clock.wall();
      parts.agent.addSession("fresh", now - 500);
      parts.agent.addSession("old", now - 700);
      parts.agent.addSession("busy", now - 9000).active = true;
    });
  }
  void change(Kind kind, std::optional<std::string> id) {
    bridge.run([&](auto parts) { parts.agent.change(kind, id); });
  }
  /// Makes that many events, each told at once, and waits for the last.
  void fillLog(int count) {
    const auto head = bridge.run([](auto parts) { return parts.store.events.head(); });
    for (int i = 0; i < count; ++i) change(Kind::Item, "gone " + std::to_string(i));
    ASSERT_TRUE(bridge.eventually([&](auto parts) { return parts.store.events.head() >= head + count; }));
  }
  static std::optional<wire::LiveEvent> next(EventClient& client,
                                             std::chrono::milliseconds patience = support::kPatience) {
    const auto text = client.next(patience);
    if (!text) return std::nullopt;
    auto event = wire::decode<wire::LiveEvent>(*text);
    EXPECT_TRUE(event) << *text;
    return event.value();
  }
  /// The events up to a silence of `patience`, as "type conversation".
  std::vector<std::string> told(EventClient& client, std::chrono::milliseconds patience = 300ms) {
    std::vector<std::string> list;
    while (const auto event = next(client, patience)) {
      EXPECT_GT(event->sequence, last) << "numbers do not grow";
      last = event->sequence;
      list.push_back(event->type + (event->sessionId ? " " + *event->sessionId : ""));
    }
    return list;
  }

  RunningBridge bridge;
  std::string token = bridge.pair();
  std::int64_t last = 0;
};

TEST_F(EventsTest, beginsWithASnapshotAndTheNamesOfWhatMoved) {
  fillLog(3);
  EventClient client(bridge.port(), token, 0);
  ASSERT_EQ(client.status(), 101);
  EXPECT_THAT(told(client), ElementsAre("snapshot.required", "turn.updated fresh", "turn.updated busy"));
  change(Kind::Turn, "old");
  EXPECT_THAT(told(client), ElementsAre("activity.updated old"));
  // Who has seen all that resumes exactly.
  change(Kind::Turn, "fresh");
  ASSERT_TRUE(bridge.eventually([&](auto parts) { return parts.store.events.head() > last; }));
  EventClient resumed(bridge.port(), token, last);
  EXPECT_THAT(told(resumed), ElementsAre("activity.updated fresh"));
}

TEST_F(EventsTest, resumesExactlyWhatWasMissedUpToTwoHundred) {
  fillLog(201);
  const auto head = bridge.run([](auto parts) { return parts.store.events.head(); });
  EventClient exact(bridge.port(), token, head - 200);
  last = head - 200;
  const auto missed = told(exact);
  EXPECT_EQ(missed.size(), 200U);
  EXPECT_EQ(missed.back(), "tracking.changed gone 200");
  EXPECT_EQ(last, head);
  EventClient behind(bridge.port(), token, head - 201);
  EXPECT_EQ(next(behind).value().type, "snapshot.required");
  for (const std::int64_t ahead : {1, 100'000}) {
    const auto newest = bridge.run([](auto parts) { return parts.store.events.head(); });
    EventClient beyond(bridge.port(), token, newest + ahead);
    EXPECT_EQ(next(beyond).value().type, "snapshot.required") << ahead;
  }
  const auto now = bridge.run([](auto parts) { return parts.store.events.head(); });
  EventClient current(bridge.port(), token, now);
  EXPECT_THAT(told(current, 100ms), IsEmpty());
}

TEST_F(EventsTest, beginsAnewWhenTheLogHasForgotten) {
  const auto trimmed = bridge.run([](auto parts) {
    store::EventLog small(parts.store.database(), 10);
    // Each a multiple of what the log is trimmed at; few enough to be resumed.
    for (int i = 1; i <= 50; ++i) small.append(i * 100L, R"({"sequence":1,"type":"t","timestamp":1,"payload":{}})");
    return small.trimmed();
  });
  ASSERT_EQ(trimmed, 4000);
  EventClient forgotten(bridge.port(), token, trimmed - 100);
  EXPECT_EQ(next(forgotten).value().type, "snapshot.required");
  EventClient kept(bridge.port(), token, trimmed);
  EXPECT_EQ(next(kept).value().type, "t");
}

TEST_F(EventsTest, beginsAnewWhenASnapshotWasCutShort) {
  {
    EventClient cut(bridge.port(), token, 0);
    last = next(cut).value().sequence;
  }
  EventClient again(bridge.port(), token, last);
  EXPECT_THAT(told(again), ElementsAre("snapshot.required", "turn.updated fresh", "turn.updated busy"));
  EventClient whole(bridge.port(), token, last);
  EXPECT_THAT(told(whole, 100ms), IsEmpty()) << "who has seen all of it gets it once more";
}

TEST_F(EventsTest, beginsAnewAfterAFailureToWrite) {
  fillLog(1);
  const auto head = bridge.run([](auto parts) { return parts.store.events.head(); });
  EventClient client(bridge.port(), token, head);
  bridge.run([](auto parts) {
    parts.store.database().execute(
        "CREATE TRIGGER full BEFORE INSERT ON events BEGIN SELECT RAISE(ABORT, 'the disk is full'); END");
  });
  change(Kind::Turn, "old");
  EXPECT_THAT(told(client), IsEmpty());
  bridge.run([](auto parts) { parts.store.database().execute("DROP TRIGGER full"); });
  EXPECT_EQ(next(client).value().type, "snapshot.required");
}

TEST_F(EventsTest, carriesTheLockScreensContent) {
  bridge.run([](auto parts) {
    auto& session = parts.agent.summaries[0];
    session.state = wire::CodexTurnState::NeedsInput;
    session.currentTurnId = "turn 1";
    session.latestCommentary = "May I?";
    parts.store.tracking.track("fresh");
  });
  const auto head = bridge.run([](auto parts) { return parts.store.events.reserve(1); });
  EventClient client(bridge.port(), token, head);
  change(Kind::Request, "fresh");
  const auto event = next(client).value();
  EXPECT_EQ(event.type, "activity.updated");
  EXPECT_EQ(event.turnId, "turn 1");
  EXPECT_EQ(event.payload.value().at("tracked"), json::JSONValue(true));
  EXPECT_EQ(event.payload.value().at("project"), json::JSONValue("Name of fresh"));
  const auto content = event.payload.value().at("content");
  EXPECT_EQ(*content.member("state"), json::JSONValue("needsInput"));
  EXPECT_EQ(*content.member("message"), json::JSONValue("May I?"));
  EXPECT_EQ(*content.member("sequence"), json::JSONValue(event.sequence));
  // The turn is named after it has ended, too, so that the lock screen shows how.
  bridge.run([](auto parts) { parts.agent.summaries[0].currentTurnId.reset(); });
  change(Kind::Turn, "fresh");
  EXPECT_EQ(next(client).value().turnId, "turn 1");
}

TEST_F(EventsTest, tellsEachKindOfChange) {
  const auto head = bridge.run([](auto parts) { return parts.store.events.reserve(1); });
  EventClient client(bridge.port(), token, head);
  change(Kind::Usage, {});
  EXPECT_THAT(told(client), ElementsAre("usage.updated"));
  change(Kind::List, "old");
  EXPECT_THAT(told(client, 100ms), ElementsAre("tracking.changed old"));
  change(Kind::Item, "fresh");  // seen for the first time: the list may show it differently
  EXPECT_THAT(told(client, 600ms), ElementsAre("activity.updated fresh"));
  change(Kind::Item, "fresh");
  EXPECT_THAT(told(client, 100ms), ElementsAre("item.updated fresh"));
  change(Kind::Lost, {});
  EXPECT_THAT(told(client), ElementsAre("snapshot.required", "turn.updated fresh", "turn.updated busy"));
}

TEST_F(EventsTest, mergesABurstIntoTwoASecond) {
  const auto head = bridge.run([](auto parts) { return parts.store.events.reserve(1); });
  EventClient client(bridge.port(), token, head);
  for (int i = 0; i < 200; ++i) change(Kind::Item, "fresh");
  EXPECT_EQ(told(client, 800ms).size(), 2U) << "the first at once, the last after half a second";
}

TEST_F(EventsTest, endsAtOnceWhenTheDeviceIsRevoked) {
  const auto other = bridge.pair("Other");
  EventClient revoked(bridge.port(), token, 0);
  EventClient kept(bridge.port(), other, 0);
  ASSERT_EQ(revoked.status(), 101);
  bridge.run([](auto parts) {
    EXPECT_TRUE(parts.bridge.revoke(parts.store.devices.list()[0].id));
    EXPECT_FALSE(parts.bridge.revoke("nobody"));
  });
  EXPECT_TRUE(revoked.closesWithin(1s));
  EXPECT_EQ(EventClient(bridge.port(), token, 0).status(), 401);
  EXPECT_EQ(support::send(bridge.port(), {.path = "/v1/sessions", .token = token}).status, 401);
  change(Kind::Turn, "old");
  bool reached = false;
  while (const auto event = next(kept, 2s)) reached = reached || event->sessionId == "old";
  EXPECT_TRUE(reached) << "another device's stream has ended, too";
}

TEST_F(EventsTest, doesNotBeginWhenTheDeviceIsRevokedMeanwhile) {
  bridge.run([](auto parts) { parts.agent.holdList(); });
  auto waiting = std::async(std::launch::async, [&] { return EventClient(bridge.port(), token, 0).status(); });
  ASSERT_TRUE(bridge.eventually([](auto parts) { return parts.agent.listsWaiting() == 1; }));
  bridge.run([](auto parts) {
    parts.bridge.revoke(parts.store.devices.list()[0].id);
    parts.agent.release();
  });
  EXPECT_EQ(waiting.get(), 401);
}

TEST_F(EventsTest, endsInASecondEvenWhenNobodyReads) {
  EventClient stuck(bridge.port(), token, 0);
  ASSERT_EQ(stuck.status(), 101);
  // More than the two sockets hold.
  const auto head = bridge.run([](auto parts) {
    for (int i = 0; i < 200; ++i) {
      const auto id = "large " + std::to_string(i);
      parts.agent.addSession(id, 1).latestCommentary = std::string(100'000, 'x');
      parts.agent.change(Kind::Turn, id);
    }
    return parts.store.events.head();
  });
  ASSERT_TRUE(bridge.eventually([&](auto parts) { return parts.store.events.head() >= head + 200; }));
  EXPECT_FALSE(stuck.isCutWithin(100ms));
  bridge.run([](auto parts) { parts.bridge.revoke(parts.store.devices.list()[0].id); });
  EXPECT_TRUE(stuck.isCutWithin(1s));
}

TEST_F(EventsTest, isRefusedWithAnAnswer) {
  EXPECT_EQ(EventClient(bridge.port(), "wrong", 0).status(), 401);
  EXPECT_EQ(support::send(bridge.port(), {.path = "/v1/events?access_token=" + token}).status, 426);
  const support::Request noNumber{.path = "/v1/events?after=x&access_token=" + token,
                                  .headers = {{"Connection", "Upgrade"},
                                              {"Upgrade", "websocket"},
                                              {"Sec-WebSocket-Version", "13"},
                                              {"Sec-WebSocket-Key", "dGhlIHNhbXBsZSBub25jZQ=="}}};
  EXPECT_EQ(support::send(bridge.port(), noNumber).status, 400);
  // A body that nobody reads is not taken for the next request.
  support::RawConnection smuggling(bridge.port());
  smuggling.send(
      support::textOf({.path = "/v1/events?access_token=" + token, .body = "GET / HTTP/1.1\r\n\r\n"}, bridge.port()));
  EXPECT_EQ(support::readResponse(smuggling).value().status, 426);
  EXPECT_FALSE(support::readResponse(smuggling));
}

TEST(EventStream, waitsNoLongerForTheAgentThanAnyRequest) {
  RunningBridge bridge({.streamsPerDevice = 1, .handlerTime = 200ms});
  const auto token = bridge.pair();
  bridge.run([](auto parts) { parts.agent.holdList(); });
  EXPECT_EQ(EventClient(bridge.port(), token, 0).status(), 504);
  bridge.run([](auto parts) { parts.agent.release(); });
  // What was given up does not count among the device's streams.
  EXPECT_EQ(EventClient(bridge.port(), token, 0).status(), 101);
}

TEST(EventStream, isPingedAndLimitedPerDevice) {
  RunningBridge bridge({.streamsPerDevice = 2, .silentTime = 400ms});
  const auto token = bridge.pair();
  EventClient answering(bridge.port(), token, 0);
  EventClient silent(bridge.port(), token, 0);
  EXPECT_EQ(EventClient(bridge.port(), token, 0).status(), 429);
  const auto end = std::chrono::steady_clock::now() + 1s;
  while (std::chrono::steady_clock::now() < end) answering.next(100ms);  // answers pings
  EXPECT_TRUE(silent.closesWithin(5s)) << "a peer that answers no ping is kept";
  bridge.run([](auto parts) { parts.agent.change(Kind::Usage, {}); });
  EXPECT_TRUE(answering.next()) << "a peer that answers pings has been cut";
}

}  // namespace
}  // namespace varnel::http
