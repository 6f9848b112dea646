// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// What the bridge lets in, and how much of it.
#include <gmock/gmock.h>

#include <set>

#include "core/json/text.h"
#include "tests/support/http_client.h"
#include "tests/support/running_bridge.h"

namespace varnel::http {
namespace {

using namespace std::chrono_literals;
using support::RawConnection;
using support::Request;
using support::RunningBridge;
using support::send;
using ::testing::HasSubstr;
using ::testing::Not;

/// Every refusal is JSON with an `error` text and the contract's number.
void expectError(const support::Response& response, int status) {
  EXPECT_EQ(response.status, status) << response.body;
  const auto body = json::parse(response.body);
  ASSERT_TRUE(body) << response.body;
  ASSERT_NE(body->member("error"), nullptr) << response.body;
  EXPECT_NE(body->member("error")->string(), nullptr);
  EXPECT_EQ(response.headers.at("varnel-contract"), "1");
  EXPECT_EQ(response.headers.at("content-type"), "application/json");
}

TEST(Guard, refusesForeignNamesPagesAndStrangers) {
  RunningBridge bridge;
  const auto token = bridge.pair();
  const auto port = bridge.port();
  const std::string path = "/v1/sessions";
  EXPECT_EQ(send(port, {.path = path, .token = token}).status, 200);
  expectError(send(port, {.path = path, .token = token, .headers = {{"Host", "evil.example"}}}), 421);
  expectError(send(port, {.path = path, .token = token, .headers = {{"Origin", "http://127.0.0.1"}}}), 403);
  expectError(send(port, {.path = path, .token = token, .headers = {{"Origin", "null"}}}), 403);
  expectError(send(port, {.path = path}), 401);
  expectError(send(port, {.path = path, .token = token + "x"}), 401);
  expectError(send(port, {.path = path + "?access_token=" + token}), 401);  // in the query for the stream only
  expectError(send(port, {.path = "/v1/nothing", .token = token}), 404);
  expectError(send(port, {.path = "/v1/nothing"}), 401);
  const auto wrongVerb = send(port, {.method = "DELETE", .path = path, .token = token});
  expectError(wrongVerb, 405);
  EXPECT_EQ(wrongVerb.headers.at("allow"), "GET, POST");
  const auto preflight = send(port, {.method = "OPTIONS", .path = path, .token = token});
  EXPECT_FALSE(preflight.headers.contains("access-control-allow-origin"));
  RawConnection nameless(port);
  nameless.send("GET /v1/sessions HTTP/1.1\r\n\r\n");
  expectError(support::readResponse(nameless).value(), 421);
}

TEST(Guard, looksAtTheTokenBeforeTheBody) {
  RunningBridge bridge;
  RawConnection connection(bridge.port());
  // The body is announced and never sent: an answer shows that nobody waits for it.
  connection.send("POST /v1/sessions/a/name HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 1000\r\n\r\n");
  expectError(support::readResponse(connection).value(), 401);
  EXPECT_TRUE(connection.closesWithin(5s));
}

TEST(Guard, limitsHeadersBodiesAndNesting) {
  RunningBridge bridge;
  const auto token = bridge.pair();
  const auto port = bridge.port();
  bridge.run([](auto parts) { parts.agent.addSession("a", 1); });
  expectError(send(port, {.path = "/v1/sessions", .token = token, .headers = {{"X", std::string(17UL * 1024, 'x')}}}),
              431);
  const Request large{.method = "POST", .path = "/v1/sessions/a/name", .token = token};
  auto announced = large;
  announced.body = std::string(1024 * 1024 + 1, ' ');
  expectError(send(port, announced), 413);

  RawConnection chunked(port);
  chunked.send(
      "POST /v1/sessions/a/name HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\nAuthorization: Bearer " +
      token + "\r\n\r\n");
  for (int i = 0; i < 20 && chunked.send("10000\r\n" + std::string(65536, ' ') + "\r\n"); ++i) {
  }
  expectError(support::readResponse(chunked).value(), 413);

  expectError(send(port, {.method = "POST", .path = "/v1/pair/claim", .body = std::string(5000, ' ')}), 413);

  auto nested = large;
  nested.body = R"({"name":)" + std::string(600, '[') + std::string(600, ']') + "}";
  expectError(send(port, nested), 400);
  auto file = large;
  file.path = "/v1/sessions/a/uploads";
  file.headers = {{"Content-Length", std::to_string(service::Attachments::kLargestBytes + 1)}};
  expectError(send(port, file), 413);
  RawConnection garbage(port);
  garbage.send("\x16\x03\x01 hello\r\n\r\n");
  EXPECT_EQ(support::readResponse(garbage).value().status, 400);
}

TEST(Guard, cutsWhoIsSlow) {
  RunningBridge bridge({.headerTime = 200ms, .bodyTime = 200ms, .idleTime = 60s});
  const auto token = bridge.pair();
  RawConnection slowHeader(bridge.port());
  slowHeader.send("GET /v1/sess");
  expectError(support::readResponse(slowHeader).value(), 408);
  EXPECT_TRUE(slowHeader.closesWithin(5s));
  RawConnection slowBody(bridge.port());
  slowBody.send("POST /v1/sessions/a/name HTTP/1.1\r\nHost: localhost\r\nContent-Length: 9\r\nAuthorization: Bearer " +
                token + "\r\n\r\n{");
  expectError(support::readResponse(slowBody).value(), 408);
  RawConnection silent(bridge.port());
  EXPECT_TRUE(silent.closesWithin(5s)) << "who has said nothing yet is given the time between two requests";
  RawConnection resting(bridge.port());
  resting.send(support::textOf({.path = "/v1/projects", .token = token}, bridge.port()));
  EXPECT_EQ(support::readResponse(resting).value().status, 200);
  EXPECT_FALSE(resting.closesWithin(400ms));
}

TEST(Guard, keepsAConnectionForManyRequestsAndCountsThem) {
  RunningBridge bridge({.connections = 2, .turnedAway = 1});
  const auto token = bridge.pair();
  RawConnection first(bridge.port());
  for (int i = 0; i < 3; ++i) {
    first.send(support::textOf({.path = "/v1/projects", .token = token}, bridge.port()));
    EXPECT_EQ(support::readResponse(first).value().status, 200);
  }
  // Two requests in one piece are answered one after the other.
  const auto twice = support::textOf({.path = "/v1/projects", .token = token}, bridge.port());
  first.send(twice + twice);
  EXPECT_EQ(support::readResponse(first).value().status, 200);
  EXPECT_EQ(support::readResponse(first).value().status, 200);
  RawConnection second(bridge.port());
  second.send(twice);
  EXPECT_EQ(support::readResponse(second).value().status, 200);
  RawConnection third(bridge.port());
  RawConnection fourth(bridge.port());
  expectError(support::readResponse(third).value(), 503);
  EXPECT_FALSE(support::readResponse(fourth)) << "turning away has no bound";
}

TEST(Guard, asksForABodyThatWaitsToBeAskedFor) {
  RunningBridge bridge;
  const auto token = bridge.pair();
  bridge.run([](auto parts) { parts.agent.addSession("a", 1); });
  RawConnection connection(bridge.port());
  connection.send(
      "POST /v1/sessions/a/name HTTP/1.1\r\nHost: localhost\r\nContent-Length: 12\r\nExpect: 100-continue\r\n"
      "Authorization: Bearer " +
      token + "\r\n\r\n");
  EXPECT_THAT(connection.readUntil("\r\n\r\n").value_or(""), HasSubstr("100 Continue"));
  connection.send(R"({"name":"n"})");
  EXPECT_EQ(support::readResponse(connection).value().status, 200);
}

TEST(Claim, isWonByOneOfTwenty) {
  RunningBridge bridge;
  const auto secret = bridge.run([](auto parts) { return parts.bridge.pairing.offer({}).secret; });
  const std::string body = R"({"secret":")" + secret + R"(","deviceName":"Phone"})";
  std::vector<RawConnection> claims;
  for (int i = 0; i < 20; ++i) claims.emplace_back(bridge.port());
  for (auto& claim : claims) {
    claim.send(support::textOf({.method = "POST", .path = "/v1/pair/claim", .body = body}, bridge.port()));
  }
  int won = 0;
  for (auto& claim : claims) won += support::readResponse(claim).value().status == 200 ? 1 : 0;
  EXPECT_EQ(won, 1);
  EXPECT_EQ(bridge.run([](auto parts) { return parts.store.devices.list().size(); }), 1U);
}

TEST(Claim, tellsNothingAndPausesWhateverTheAddressClaimsToBe) {
  RunningBridge bridge;
  const auto claim = [&](const std::string& secret, const std::string& from) {
    return send(bridge.port(), {.method = "POST",
                                .path = "/v1/pair/claim",
                                .body = R"({"secret":")" + secret + R"(","deviceName":"x"})",
                                .headers = {{"X-Forwarded-For", from}}});
  };
  const auto offer = [&] { return bridge.run([](auto parts) { return parts.bridge.pairing.offer({}).secret; }); };
  const auto used = offer();
  EXPECT_EQ(claim(used, "1.1.1.1").status, 200);
  const auto expired = offer();
  bridge.advance(301s);
  std::set<std::string> answers;
  for (const auto& secret : {used, expired, std::string("wrong")}) {
    const auto response = claim(secret, "2.2.2.2");
    expectError(response, 403);
    answers.insert(response.body);
  }
  EXPECT_EQ(answers.size(), 1U);
  for (int i = 3; i < 10; ++i) EXPECT_EQ(claim("wrong", "3.3.3." + std::to_string(i)).status, 403);
  const auto right = offer();
  EXPECT_EQ(claim(right, "9.9.9.9").status, 429);
  bridge.advance(60s);
  EXPECT_EQ(claim(right, "9.9.9.9").status, 200);
}

TEST(Log, holdsNoTokenAndNoSecretWhateverGoesWrong) {
  ::testing::internal::CaptureStderr();
  std::string token;
  std::string secret;
  {
    RunningBridge bridge({.headerTime = 200ms});
    token = bridge.pair();
    secret = bridge.run([](auto parts) { return parts.bridge.pairing.offer({}).secret; });
    const std::string claim = R"({"secret":")" + secret + R"(", "deviceName": 5})";
    send(bridge.port(), {.method = "POST", .path = "/v1/pair/claim", .body = claim});
    bridge.run([](auto parts) { parts.agent.addSession("a", std::numeric_limits<double>::infinity()); });
    send(bridge.port(), {.path = "/v1/sessions?access_token=" + token, .token = token});  // cannot be written: logged
    send(bridge.port(), {.method = "POST", .path = "/v1/sessions/" + token, .token = token, .body = token});
    send(bridge.port(), {.path = "/v1/events?after=x&access_token=" + token});
    RawConnection cut(bridge.port());
    cut.send("GET /v1/events?access_token=" + token + " HTTP/1.1\r\nAuthorization: Bearer " + token);
    EXPECT_TRUE(support::readResponse(cut));
  }
  const std::string logged = ::testing::internal::GetCapturedStderr();
  EXPECT_THAT(logged, HasSubstr("not sent")) << "nothing was logged at all: this test sees nothing";
  EXPECT_THAT(logged, Not(HasSubstr(token)));
  EXPECT_THAT(logged, Not(HasSubstr(secret)));
}

}  // namespace
}  // namespace varnel::http
