// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <set>

#include "tests/app/client/client_fixture.h"

/// What each operation puts on the wire and hands back.
namespace varnel::client {
namespace {

using testing::ElementsAre;

class Operations : public PairedClient {
 protected:
  /// The names of the last request's headers, those of HTTP itself and of the network stack left out.
  std::vector<std::string> ownHeaders() {
    std::vector<std::string> names;
    for (const auto& [name, value] : bridge.requests().back().headers) {
      static const std::set<std::string> inevitable = {
          "Host", "Connection", "Content-Length", "Accept-Encoding", "Accept-Language", "User-Agent"};
      if (!inevitable.contains(name)) names.push_back(name);
    }
    return names;
  }
  std::string lastBody() { return bridge.requests().back().body; }
};

TEST_F(Operations, ReadingOnesSendNoBodyAndNoKey) {
  bridge.expect("GET", "/v1/sessions", Script::json(200, R"({"sessions":[]})"));
  EXPECT_EQ(await(client.sessions())->size(), 0u);
  EXPECT_THAT(ownHeaders(), ElementsAre("Accept", "Authorization"));
  EXPECT_EQ(bridge.requests().back().header("Accept"), "application/json");
  EXPECT_EQ(bridge.requests().back().header("Authorization"), std::string("Bearer ") + kToken);

  bridge.expect("GET", "/v1/projects", Script::json(200, R"({"projects":[{"path":"/p","name":"P","highRisk":true}]})"));
  EXPECT_THAT(await(client.projects()).value(), ElementsAre(wire::ProjectRecord{"/p", "P", true}));
  bridge.expect("GET", "/v1/models", Script::json(200, R"({"data":[1,null]})"));
  EXPECT_EQ(await(client.models())->text(), R"({"data":[1,null]})");
  bridge.expect("GET", "/v1/rate-limit", Script::json(200, R"({"rateLimit":{"usedPercent":4}})"));
  EXPECT_EQ(await(client.rateLimit())->rateLimit->usedPercent, 4);
}

TEST_F(Operations, QueriesReachTheWireAsTheyWereEncoded) {
  const Script usage = Script::json(200, R"({"summary":{},"dailyUsageBuckets":[],"fetchedAt":1})");
  bridge.expect("GET", "/v1/usage", usage);
  EXPECT_TRUE(await(client.usage(std::nullopt)));
  bridge.expect("GET", "/v1/usage?sessionId=a%20b", usage);
  EXPECT_TRUE(await(client.usage("a b")));
  const Script page = Script::json(200, R"({"data":[],"nextCursor":"n"})");
  bridge.expect("GET", "/v1/sessions/archived", page);
  EXPECT_EQ(await(client.archivedSessions(std::nullopt))->nextCursor, "n");
  bridge.expect("GET", "/v1/search?q=a%26b%3D%2B%3F%20%C3%A9&cursor=c%2Fd", page);
  EXPECT_TRUE(await(client.search("a&b=+? é", "c/d")));
}

TEST_F(Operations, ASessionKeepsEveryMemberOfItsAnswer) {
  bridge.expect("GET", "/v1/sessions/a%3Fb", Script::json(200, R"({"items":[],"session":3,"later":"x"})"));
  const auto detail = await(client.session("a?b"));
  ASSERT_TRUE(detail);
  EXPECT_EQ(*detail->whole.value().member("later")->string(), "x");
  EXPECT_TRUE(detail->items.value().has_value());
  EXPECT_FALSE(detail->session.value().has_value());
}

TEST_F(Operations, ChangingOnesSendTheirBodyAndAKey) {
  const wire::ConversationPreferences preferences{wire::CodexCollaborationMode::Plan, "m", "high", std::nullopt};
  const auto ok = [this](const char* target) { bridge.expect("POST", target, Script::json(200, "{}")); };

  ok("/v1/sessions/s/messages");
  EXPECT_TRUE(await(client.sendMessage("s", "hi", preferences, {})));
  EXPECT_THAT(ownHeaders(), ElementsAre("Accept", "Authorization", "Idempotency-Key", "Content-Type"));
  EXPECT_EQ(lastBody(), R"({"text":"hi","mode":"plan","model":"m","reasoningEffort":"high","serviceTier":"default",)"
                        R"("attachments":[]})");
  ok("/v1/sessions/s/goal");
  EXPECT_TRUE(await(client.startGoal("s", "win", preferences, {})));
  ok("/v1/sessions/s/settings");
  EXPECT_TRUE(await(client.updateSettings("s", preferences)));
  ok("/v1/sessions/s/interrupt");
  EXPECT_TRUE(await(client.interrupt("s")));
  EXPECT_EQ(lastBody(), "{}");
  ok("/v1/sessions/s/name");
  EXPECT_TRUE(await(client.rename("s", "n")));
  ok("/v1/sessions/s/unarchive");
  EXPECT_TRUE(await(client.archive("s", true)));
  ok("/v1/requests/r%3F/resolve");
  EXPECT_TRUE(await(client.resolve("r?", json::JSONValue(json::JSONValue::Object{{"decision", "accept"}}))));
  EXPECT_EQ(lastBody(), R"({"result":{"decision":"accept"}})");
  ok("/v1/tracking");
  EXPECT_TRUE(await(client.track(std::nullopt, false, "clear")));
  EXPECT_EQ(lastBody(), R"({"pin":false,"action":"clear"})");

  bridge.expect("POST", "/v1/sessions", Script::json(201, R"({"threadId":"t9"})"));
  const wire::NewSessionBody session{"/p", "default", std::nullopt, std::nullopt, "read-only", "never", false, "go"};
  EXPECT_EQ(await(client.createSession(session)), std::string("t9"));
}

TEST_F(Operations, AnUploadIsTheBytes) {
  const std::string attachment = R"({"id":"u","kind":"file","name":"n","mimeType":"t","size":3})";
  for (const QByteArray& data : {QByteArray("a\0b", 3), QByteArray()}) {
    bridge.expect("POST", "/v1/sessions/s/uploads", Script::json(200, attachment));
    EXPECT_EQ(await(client.upload("s", data, "image/png", "my file.png"))->id, "u");
    EXPECT_EQ(lastBody(), data.toStdString());
    EXPECT_THAT(ownHeaders(), ElementsAre("Authorization", "Idempotency-Key", "Content-Type", "X-File-Name"));
    EXPECT_EQ(bridge.requests().back().header("X-File-Name"), "my file.png");
    EXPECT_EQ(bridge.requests().back().header("Content-Length"), std::to_string(data.size()));
  }
}

TEST_F(Operations, AClaimNeedsNoPairingAndSendsNoToken) {
  for (APIClient* claiming : {&client, std::make_unique<APIClient>(std::nullopt).release()}) {
    bridge.expect("POST", "/prefix/v1/pair/claim", Script::json(200, R"({"deviceId":"d","token":"t"})"));
    const auto baseURL = base::Url::parse(bridge.baseURL() + "/prefix").value();
    EXPECT_EQ(await(claiming->claim(baseURL, "secret", "phone")), (wire::PairingCredentials{baseURL, "d", "t"}));
    EXPECT_THAT(ownHeaders(), ElementsAre("Accept", "Idempotency-Key", "Content-Type"));
    if (claiming != &client) delete claiming;
  }
}

TEST_F(Operations, CredentialsCountFromTheNextCall) {
  bridge.expect("GET", "/v1/sessions", Script::silence());
  bridge.expect("GET", "/v1/projects", Script::json(200, R"({"projects":[]})"));
  std::stop_source stop;
  auto running = client.sessions(stop.get_token());
  client.setCredentials(credentialsFor(bridge.baseURL(), "other"));
  EXPECT_TRUE(await(client.projects()));
  ASSERT_EQ(bridge.requests().size(), 2u);
  EXPECT_EQ(bridge.requests()[0].header("Authorization"), std::string("Bearer ") + kToken);
  EXPECT_EQ(bridge.requests()[1].header("Authorization"), "Bearer other");
  stop.request_stop();
  EXPECT_FALSE(await(std::move(running)));
}

TEST_F(Operations, WithoutCredentialsNothingIsSent) {
  client.setCredentials(std::nullopt);
  const auto notPaired = [](const auto& result) { return userText(errorOf(result)) == "This iPhone is not paired."; };
  EXPECT_TRUE(notPaired(await(client.sessions())));
  EXPECT_TRUE(notPaired(await(client.interrupt("s"))));
  EXPECT_TRUE(notPaired(await(client.upload("s", "x", "t", "n"))));
  EXPECT_TRUE(notPaired(client.eventStream(0)));
  support::spinFor(50ms);
  EXPECT_EQ(bridge.connections(), 0);
}

TEST_F(Operations, SeveralAtOnce) {
  bridge.expect("GET", "/v1/sessions", Script::silence());
  bridge.expect("GET", "/v1/projects", Script::json(200, R"({"projects":[]})"));
  std::stop_source stop;
  auto slow = client.sessions(stop.get_token());
  EXPECT_TRUE(await(client.projects())) << "a call in flight holds up no other";
  stop.request_stop();
  EXPECT_EQ(errorOf(await(std::move(slow))), ClientError(Cancelled{}));
}

}  // namespace
}  // namespace varnel::client
