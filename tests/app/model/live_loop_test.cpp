// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

class LiveLoop : public ModelTest {
 protected:
  /// Started on a stream that has been accepted, with the refresh of the start failed and done.
  void startWithStream(std::vector<std::string> first = {}) {
    makePaired();
    expectStream(0, std::move(first));
    failRefreshes();
    model->start();
    ASSERT_TRUE(spinUntil([this] { return bridge.openStreams() == 1 && seen("connected"); }));
    ASSERT_TRUE(waitFor("GET /v1/rate-limit"));
    settle();
    log.clear();
  }

  void failRefreshes() {
    for (const auto* target : {kSessions, kProjects, kModels, kUsage, kRateLimit}) {
      bridge.always("GET", target, Script::json(500, "{}"));
    }
  }

  [[nodiscard]] bool waitForSleep(std::size_t count) const {
    return spinUntil([&] { return clock->sleeps.size() == count && clock->isSleeping(); });
  }
};

TEST_F(LiveLoop, ResumesAfterTheHighestSequenceSeen) {
  startWithStream();
  for (const int sequence : {5, 9, 7}) bridge.inject(answers::event(sequence, "unknown"));
  ASSERT_TRUE(spinUntil([this] { return std::ranges::count(log, "lastContact") >= 0 && model->lastSequence() == 9; }));
  settle();
  EXPECT_EQ(model->lastSequence(), 9);
  bridge.closeStreams();
  ASSERT_TRUE(waitForSleep(1));
  EXPECT_FALSE(model->isConnected());
  EXPECT_THAT(clock->sleeps, ElementsAre(1));
  expectStream(9);
  clock->wake();
  EXPECT_TRUE(spinUntil([this] { return model->isConnected(); }));
  EXPECT_TRUE(model->isStarted());
}

TEST_F(LiveLoop, TakesEventsThatCameWithTheHandshakeAndBinaryOnes) {
  startWithStream({answers::event(1, "unknown"), answers::event(2, "unknown")});
  EXPECT_EQ(model->lastSequence(), 2);
  clock->now = 2000;
  bridge.injectBinary(answers::event(3, "unknown"));
  ASSERT_TRUE(waitFor("lastContact"));
  EXPECT_EQ(model->lastSequence(), 3);
  EXPECT_EQ(model->lastContact(), 2000.0);
  EXPECT_THAT(requests(), IsEmpty());
}

struct EventCase {
  std::string type;
  std::optional<std::string> sessionId;
  std::vector<std::string> first;  ///< the requests that come first, in order
  std::size_t count;               ///< of requests in all
};

TEST_F(LiveLoop, EachEventCallsForItsRequestsInOrder) {
  startWithStream();
  bridge.always("GET", kDetail, Script::json(200, answers::detail({})));
  bridge.always("GET", kUsage, Script::json(200, answers::usage(1)));
  bridge.always("GET", kSessions, Script::json(200, answers::sessions({})));
  bridge.always("GET", kProjects, Script::json(200, answers::projects("/p")));
  bridge.always("GET", kModels, Script::json(200, answers::models("m")));
  const std::vector<EventCase> cases{
      {"snapshot.required", "s", {}, 4},
      {"usage.updated", "s", {"GET /v1/usage", "GET /v1/sessions/s"}, 2},
      {"activity.updated", "s", {"GET /v1/sessions/s"}, 4},
      {"tracking.changed", std::nullopt, {}, 3},
      {"unknown", "s", {"GET /v1/sessions/s"}, 1},
      {"unknown", std::nullopt, {}, 0},
  };
  int sequence = 0;
  for (const auto& [type, sessionId, first, count] : cases) {
    SCOPED_TRACE(type);
    log.clear();
    bridge.inject(answers::event(++sequence, type, sessionId));
    ASSERT_TRUE(spinUntil([&] { return model->lastSequence() == sequence && requests().size() >= count; }));
    settle();
    const auto made = requests();
    ASSERT_EQ(made.size(), count);
    EXPECT_TRUE(std::ranges::equal(first, made | std::views::take(first.size())));
    EXPECT_EQ(std::ranges::count(made, "GET /v1/usage"), type == "snapshot.required" || type == "usage.updated");
    EXPECT_EQ(std::ranges::count(made, "GET /v1/sessions"), count >= 3);
  }
}

TEST_F(LiveLoop, HandlesOneEventToItsEndBeforeTheNext) {
  startWithStream();
  bridge.expect("GET", kDetail, Script::silence());
  bridge.inject(answers::event(1, "unknown", "s"));
  bridge.inject(answers::event(2, "unknown", "other"));
  ASSERT_TRUE(waitFor("GET /v1/sessions/s"));
  settle();
  EXPECT_EQ(model->lastSequence(), 1);
  EXPECT_THAT(requests(), ElementsAre("GET /v1/sessions/s"));
  expectGet("/v1/sessions/other", answers::detail({}));
  bridge.answer("GET", kDetail, Script::json(500, "{}"));
  EXPECT_TRUE(waitFor("pendingRequests other"));
  EXPECT_TRUE(model->isConnected()) << "a failed load does not disturb the stream";
}

TEST_F(LiveLoop, AMalformedEventClosesTheConnectionAndIsAskedForAgain) {
  startWithStream({answers::event(3, "unknown")});
  bridge.inject(R"({"sequence":"4"})");
  ASSERT_TRUE(waitForSleep(1));
  EXPECT_TRUE(spinUntil([this] { return bridge.openStreams() == 0; }));
  EXPECT_FALSE(model->isConnected());
  EXPECT_THAT(clock->sleeps, ElementsAre(1));
  expectStream(3);
  clock->wake();
  EXPECT_TRUE(spinUntil([this] { return model->isConnected(); }));
}

TEST_F(LiveLoop, AFailedHandshakeNeverLooksConnectedAndIsRetriedEverySecond) {
  makePaired();
  failRefreshes();
  bridge.always("GET", streamTarget(0), Script::json(503, R"({"error":"busy"})"));
  model->start();
  for (std::size_t attempt = 1; attempt <= 3; ++attempt) {
    ASSERT_TRUE(waitForSleep(attempt));
    clock->wake();
  }
  ASSERT_TRUE(waitForSleep(4));
  EXPECT_THAT(clock->sleeps, ElementsAre(1, 1, 1, 1));
  EXPECT_FALSE(seen("connected"));
  EXPECT_FALSE(model->isTokenRefused());
  EXPECT_FALSE(model->hasErrorMessage());
}

TEST_F(LiveLoop, AnotherPathToTheBridgeEndsTheStreamLikeAFailure) {
  startWithStream({answers::event(3, "unknown")});
  model->pathChanged();
  model->pathChanged();
  ASSERT_TRUE(waitForSleep(1));
  EXPECT_THAT(log, ElementsAre("disconnected"));
  EXPECT_TRUE(spinUntil([this] { return bridge.openStreams() == 0; }));
  model->pathChanged();
  settle();
  EXPECT_TRUE(clock->isSleeping()) << "a wait goes on";
  expectStream(3);
  clock->wake();
  ASSERT_TRUE(spinUntil([this] { return model->isConnected(); }));
  EXPECT_THAT(clock->sleeps, ElementsAre(1));
}

TEST_F(LiveLoop, AnotherPathDuringTheHandshakeAndWithinAnEvent) {
  makePaired();
  failRefreshes();
  bridge.expect("GET", streamTarget(0), Script::silence());
  model->start();
  ASSERT_TRUE(waitFor("GET " + streamTarget(0)));
  model->pathChanged();
  ASSERT_TRUE(waitForSleep(1));
  EXPECT_FALSE(seen("connected"));

  expectStream(0, {answers::event(1, "unknown", "s"), answers::event(2, "unknown")});
  bridge.expect("GET", kDetail, Script::silence());
  clock->wake();
  ASSERT_TRUE(waitFor("GET /v1/sessions/s"));
  model->pathChanged();
  bridge.answer("GET", kDetail, Script::json(200, answers::detail({})));
  ASSERT_TRUE(waitForSleep(2));
  EXPECT_TRUE(seen("pendingRequests s")) << "the event is handled to its end";
  EXPECT_EQ(model->lastSequence(), 1) << "and the next one asked for again";
}

TEST_F(LiveLoop, ARefusedTokenIsPublishedAndTheLoopGoesOn) {
  makePaired();
  failRefreshes();
  bridge.expect("GET", streamTarget(0), Script::json(401, R"({"error":"revoked"})"));
  model->start();
  ASSERT_TRUE(waitForSleep(1));
  EXPECT_TRUE(model->isTokenRefused());
  expectStream(0);
  clock->wake();
  ASSERT_TRUE(spinUntil([this] { return model->isConnected(); }));
  EXPECT_FALSE(model->isTokenRefused());
}

TEST_F(LiveLoop, AStreamThatCannotBeAskedForIsRetriedWithGrowingWaits) {
  stored = wire::PairingCredentials{base::Url::parse("nowhere:").value(), "device", "t"};
  makePaired();
  model->start();
  for (std::size_t attempt = 1; attempt < 7; ++attempt) {
    ASSERT_TRUE(waitForSleep(attempt));
    clock->wake();
  }
  ASSERT_TRUE(waitForSleep(7));
  EXPECT_THAT(clock->sleeps, ElementsAre(1, 2, 4, 8, 16, 30, 30));
}

TEST_F(LiveLoop, StoppingEndsABackOffAndStartingBeginsAnew) {
  makePaired();
  failRefreshes();
  bridge.expect("GET", streamTarget(0), Script::drop());
  model->start();
  ASSERT_TRUE(waitForSleep(1));
  model->stop();
  EXPECT_TRUE(spinUntil([this] { return !clock->isSleeping(); }));
  settle();
  EXPECT_EQ(bridge.count("GET", streamTarget(0)), 1);
  expectStream(0);
  model->start();
  EXPECT_TRUE(spinUntil([this] { return model->isConnected(); }));
}

TEST_F(LiveLoop, StoppingDropsWhatAnEventHadBegun) {
  startWithStream();
  bridge.expect("GET", kDetail, Script::silence());
  bridge.inject(answers::event(1, "activity.updated", "s"));
  ASSERT_TRUE(waitFor("GET /v1/sessions/s"));
  log.clear();
  model->stop();
  settle();
  EXPECT_THAT(log, ElementsAre("disconnected")) << "the rest of the event's requests are not made";
}

}  // namespace
}  // namespace varnel::model
