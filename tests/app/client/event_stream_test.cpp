// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/event_stream.h"

#include "tests/app/client/client_fixture.h"

namespace varnel::client {
namespace {

constexpr const char* kTarget = "/v1/events?after=7&access_token=s3cret%2Btoken%2F%3D%3D";

class Stream : public PairedClient {
 protected:
  std::unique_ptr<EventStream> stream = std::move(client.eventStream(7).value());

  std::string nextText() {
    const auto message = await(stream->next());
    return message ? message->bytes : "failed: " + userText(message.error());
  }
  void openOn(const Script& script) {
    bridge.expect("GET", kTarget, script);
    stream->open();
  }
  static void expectNoToken(const ClientError& error) {
    EXPECT_EQ(userText(error).find("s3cret"), std::string::npos) << userText(error);
    EXPECT_FALSE(userText(error).empty());
  }
};

TEST_F(Stream, ThoseThatComeWithTheUpgradeAreTheFirst) {
  openOn(Script::acceptStream({"one", "two"}));
  EXPECT_FALSE(stream->isConnected());
  EXPECT_EQ(nextText(), "one");
  EXPECT_TRUE(stream->isConnected());
  bridge.inject("three");
  bridge.injectBinary("four");
  bridge.inject(std::string(70'000, 'x'));
  EXPECT_EQ(nextText(), "two");
  EXPECT_EQ(nextText(), "three");
  EXPECT_EQ(nextText(), "four");
  EXPECT_EQ(nextText().size(), 70'000U);
  EXPECT_FALSE(bridge.requests()[0].header("Authorization"));
  EXPECT_FALSE(bridge.requests()[0].header("Origin"));
}

TEST_F(Stream, OpensBeforeAnyMessage) {
  openOn(Script::acceptStream());
  EXPECT_TRUE(await(stream->opened()));
  EXPECT_TRUE(stream->isConnected());
  EXPECT_TRUE(await(stream->opened())) << "asking again tells the same";
}

TEST_F(Stream, ARefusalTellsItsStatus) {
  for (const int status : {401, 404, 500}) {
    stream = std::move(client.eventStream(7).value());
    openOn(Script::json(status, R"({"error":"s3cret+token/=="})"));
    const auto opened = await(stream->opened());
    EXPECT_EQ(errorOf(opened), ClientError(APIError{APIError::Kind::Server, status, "Bridge error"}));
    EXPECT_EQ(errorOf(await(stream->next())), errorOf(opened));
    EXPECT_FALSE(stream->isConnected());
  }
}

TEST_F(Stream, WhatIsSentBeforeTheEndIsReadBeforeTheFailure) {
  for (const Script::Then how : {Script::Then::Close, Script::Then::Reset}) {
    stream = std::move(client.eventStream(7).value());
    openOn(Script::acceptStream({"last"}));
    ASSERT_TRUE(await(stream->opened()));
    ASSERT_TRUE(spinUntil([&] { return bridge.openStreams() == 1; }));
    support::spinFor(20ms);
    bridge.closeStreams(how);
    ASSERT_TRUE(spinUntil([&] { return !stream->isConnected(); }));
    EXPECT_EQ(nextText(), "last");
    const auto end = await(stream->next());
    EXPECT_TRUE(failure<TransportError>(end));
    expectNoToken(errorOf(end));
  }
}

TEST_F(Stream, FailuresBeforeTheUpgrade) {
  for (const Script& script : {Script::drop(), Script::drop(Script::Then::Reset), Script::raw("SSH-2.0\r\n\r\n"),
                               Script::redirect(302, bridge.baseURL() + kTarget),
                               Script::raw("HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: "
                                           "Upgrade\r\nSec-WebSocket-Accept: wrong\r\n\r\n")}) {
    stream = std::move(client.eventStream(7).value());
    openOn(script);
    const auto opened = await(stream->opened());
    expectNoToken(errorOf(opened));
    EXPECT_FALSE(isCancelled(errorOf(opened)));
  }
  EXPECT_EQ(bridge.count("GET", kTarget), 5) << "none was sent twice, no redirect was followed";
}

TEST_F(Stream, ABridgeThatNeverUpgradesTimesOut) {
  APIClient hasty = limited({.timeout = 100ms});
  stream = std::move(hasty.eventStream(7).value());
  openOn(Script::silence());
  const auto error = failure<TransportError>(await(stream->opened()));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->kind, TransportError::Kind::TimedOut);
}

TEST_F(Stream, BrokenFramesAndFloodsEndIt) {
  openOn(Script::acceptStream());
  ASSERT_TRUE(await(stream->opened()));
  bridge.injectRaw("\xff\xff\xff\xff");
  expectNoToken(errorOf(await(stream->next())));

  EventStream small(bridge.baseURL().replace(0, 4, "ws") + kTarget, {.timeout = 5s, .queueLimit = 1000});
  bridge.expect("GET", kTarget, Script::acceptStream());
  small.open();
  ASSERT_TRUE(await(small.opened()));
  for (int i = 0; i < 11; ++i) bridge.inject(std::string(100, 'x'));
  ASSERT_TRUE(spinUntil([&] { return !small.isConnected(); }));
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(await(small.next())) << i;
  EXPECT_TRUE(failure<TransportError>(await(small.next())));
}

TEST_F(Stream, AsksASilentBridgeWhetherItIsThereAndGivesItUpWithoutAnAnswer) {
  EventStream watched(bridge.baseURL().replace(0, 4, "ws") + kTarget, {.pingAfter = 20ms, .pongWithin = 200ms});
  bridge.expect("GET", kTarget, Script::acceptStream());
  watched.open();
  ASSERT_TRUE(await(watched.opened()));
  ASSERT_TRUE(spinUntil([this] { return bridge.pings() >= 12; })) << "longer than it would wait for one answer";
  EXPECT_TRUE(watched.isConnected());
  bridge.ignorePings();
  const auto error = failure<TransportError>(await(watched.next()));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->kind, TransportError::Kind::TimedOut);
  EXPECT_TRUE(spinUntil([this] { return bridge.openStreams() == 0; }));
}

TEST_F(Stream, NoticesADeadPathWithin40Seconds) {
  constexpr EventStream::Options kOptions;
  EXPECT_LE(kOptions.pingAfter + kOptions.pongWithin, 40s);
}

TEST_F(Stream, StoppingClosesItAtOnce) {
  std::stop_source stop;
  openOn(Script::acceptStream({"unread"}));
  ASSERT_TRUE(await(stream->opened(stop.get_token())));
  EXPECT_EQ(nextText(), "unread");
  auto waiting = stream->next(stop.get_token());
  stop.request_stop();
  EXPECT_FALSE(waiting.isReady());
  EXPECT_EQ(errorOf(await(std::move(waiting))), ClientError(Cancelled{}));
  EXPECT_TRUE(spinUntil([&] { return bridge.openStreams() == 0; }));
}

TEST_F(Stream, StoppingDuringTheUpgrade) {
  std::stop_source stop;
  openOn(Script::silence());
  auto opening = stream->opened(stop.get_token());
  ASSERT_TRUE(spinUntil([&] { return bridge.requests().size() == 1; }));
  stop.request_stop();
  EXPECT_EQ(errorOf(await(std::move(opening))), ClientError(Cancelled{}));
}

TEST_F(Stream, DestroyingItEndsItsWaits) {
  openOn(Script::acceptStream());
  ASSERT_TRUE(await(stream->opened()));
  auto waiting = stream->next();
  stream.reset();
  EXPECT_EQ(errorOf(await(std::move(waiting))), ClientError(Cancelled{}));
  EXPECT_TRUE(spinUntil([&] { return bridge.openStreams() == 0; }));
}

}  // namespace
}  // namespace varnel::client
