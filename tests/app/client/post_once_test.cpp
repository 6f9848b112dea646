// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/client/client_fixture.h"

namespace varnel::client {
namespace {

constexpr const char* kInterrupt = "/v1/sessions/s/interrupt";
constexpr const char* kUpload = "/v1/sessions/s/uploads";

class PostOnce : public PairedClient {
 protected:
  /// An answered POST and an answered GET, so that whatever the client keeps alive is there to be reused.
  void warmUp() {
    bridge.expect("POST", kInterrupt, Script::json(200, "{}"));
    bridge.expect("GET", "/v1/sessions", Script::json(200, R"({"sessions":[]})"));
    ASSERT_TRUE(await(client.interrupt("s")));
    ASSERT_TRUE(await(client.sessions()));
  }

  /// Time for a second copy to arrive, were there one.
  void settle() { support::spinFor(150ms); }
};

TEST_F(PostOnce, WhateverAServerDoesInsteadOfAnswering) {
  Script early = Script::drop();
  early.early = true;
  Script earlyReset = Script::drop(Script::Then::Reset);
  earlyReset.early = true;
  const struct {
    const char* what;
    Script script;
  } cases[] = {
      {"closes", Script::drop()},
      {"resets", Script::drop(Script::Then::Reset)},
      {"closes on the head", early},
      {"resets on the head", earlyReset},
      {"sends half a status line", Script::raw("HTTP/1.")},
      {"sends half a head", Script::raw("HTTP/1.1 200 OK\r\nContent-Le")},
      {"sends half a body", Script::shortBody(R"({"ok":true})", 4, Script::Then::Close)},
      {"sends half a body and resets", Script::shortBody(R"({"ok":true})", 4, Script::Then::Reset)},
      {"speaks another protocol", Script::raw("SSH-2.0-OpenSSH_9.2\r\n")},
      {"redirects to itself", Script::redirect(307, kInterrupt)},
      {"redirects and keeps the method", Script::redirect(308, kInterrupt)},
      {"asks for a password", Script::raw("HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"
                                          "Content-Length: 0\r\n\r\n")},
      {"is busy", Script::raw("HTTP/1.1 503 Busy\r\nRetry-After: 0\r\nContent-Length: 0\r\n\r\n")},
      {"calls the request late", Script::raw("HTTP/1.1 408 Late\r\nConnection: close\r\nContent-Length: 0\r\n\r\n")},
  };
  int before = 0;
  for (const bool warm : {false, true}) {
    for (const auto& [what, script] : cases) {
      SCOPED_TRACE(std::string(what) + (warm ? ", after other requests" : ""));
      if (warm) {
        warmUp();
        ++before;
      }
      bridge.expect("POST", kInterrupt, script);
      EXPECT_FALSE(await(client.interrupt("s")));
      bridge.expect("GET", "/v1/projects", script);  // nothing is retried, so a second one is unexpected
      EXPECT_FALSE(await(client.projects()));
      settle();
      EXPECT_EQ(bridge.count("POST", kInterrupt), ++before);
    }
  }
}

TEST_F(PostOnce, ALargeUploadThatIsCutOff) {
  for (const Script::Then then : {Script::Then::Close, Script::Then::Reset}) {
    for (const bool early : {true, false}) {
      Script script = Script::drop(then);
      script.early = early;
      bridge.expect("POST", kUpload, script);
      EXPECT_FALSE(await(client.upload("s", QByteArray(5'000'000, 'x'), "image/png", "a.png")));
      settle();
    }
  }
  EXPECT_EQ(bridge.count("POST", kUpload), 4);
}

TEST_F(PostOnce, ManyAtOnceMixedWithDrops) {
  std::vector<Task<Result<void>>> tasks;
  for (int i = 0; i < 20; ++i) {
    const std::string id = "n" + std::to_string(i);
    bridge.expect("POST", "/v1/sessions/" + id + "/interrupt", i % 3 == 0 ? Script::drop() : Script::json(200, "{}"));
    tasks.push_back(client.interrupt(id));
  }
  for (std::size_t i = 0; i < tasks.size(); ++i) EXPECT_EQ(await(std::move(tasks[i])).has_value(), i % 3 != 0) << i;
  settle();
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(bridge.count("POST", "/v1/sessions/n" + std::to_string(i) + "/interrupt"), 1) << i;
  }
}

TEST_F(PostOnce, AConnectionThatIsDroppedBeforeTheRequest) {
  bridge.dropNextConnections(1);
  bridge.always("POST", kInterrupt, Script::json(200, "{}"));
  (void)await(client.interrupt("s"));
  settle();
  EXPECT_LE(bridge.count("POST", kInterrupt), 1);
}

TEST_F(PostOnce, TwoEqualCallsAreTwoRequestsWithKeysOfTheirOwn) {
  for (int i = 0; i < 2; ++i) bridge.expect("POST", kInterrupt, Script::json(200, "{}"));
  EXPECT_TRUE(await(client.interrupt("s")));
  EXPECT_TRUE(await(client.interrupt("s")));
  ASSERT_EQ(bridge.requests().size(), 2u);
  const std::string first = bridge.requests()[0].header("Idempotency-Key").value_or("");
  EXPECT_THAT(first, testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}"));
  EXPECT_NE(first, bridge.requests()[1].header("Idempotency-Key"));
}

}  // namespace
}  // namespace varnel::client
