// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// The bridge with the agent that comes with it: a message is answered, and everything it ever says can be read.
#include <gmock/gmock.h>

#include "core/wire/codec.h"
#include "core/wire/event.h"
#include "core/wire/search.h"
#include "core/wire/session_detail.h"
#include "core/wire/usage.h"
#include "host/agent/demo/demo_agent.h"
#include "tests/support/http_client.h"
#include "tests/support/running_bridge.h"

namespace varnel::http {
namespace {

using namespace std::chrono_literals;

std::unique_ptr<agent::Agent> makeDemo(boost::asio::any_io_executor executor) {
  return std::make_unique<agent::demo::DemoAgent>(executor, agent::demo::DemoOptions{.seed = 7, .speed = 100});
}

class DemoTest : public ::testing::Test {
 protected:
  support::Response get(const std::string& path) {
    return support::send(bridge.port(), {.path = path, .token = token});
  }
  std::vector<wire::SessionSummary> sessions() {
    return wire::decode<wire::SessionsEnvelope>(get("/v1/sessions").body).value().sessions;
  }
  std::vector<wire::TranscriptItem> items(const std::string& id) {
    return wire::decodeSessionDetail(get("/v1/sessions/" + id).body).value().items->value();
  }

  support::RunningBridge bridge{{}, makeDemo};
  std::string token = bridge.pair();
};

TEST_F(DemoTest, everyAnswerIsSentAndRead) {
  for (const auto& session : sessions()) EXPECT_FALSE(items(session.id).empty()) << session.id;
  for (const auto* path : {"/v1/projects", "/v1/models", "/v1/rate-limit", "/v1/usage"}) {
    EXPECT_EQ(get(path).status, 200) << path;
  }
  std::optional<std::string> cursor;
  std::size_t archived = 0;
  int pages = 0;
  do {
    const auto body = get("/v1/sessions/archived" + (cursor ? "?cursor=" + *cursor : "")).body;
    const auto page = wire::decode<wire::ArchivedSessionsEnvelope>(body).value();
    for (const auto& session : page.data) EXPECT_FALSE(items(session.id).empty()) << session.id;
    archived += page.data.size();
    cursor = page.nextCursor;
  } while (cursor && ++pages < 20);
  EXPECT_GT(archived, service::Conversations::kArchivePage) << "the archive shows no paging";
  EXPECT_FALSE(wire::decode<wire::SearchEnvelope>(get("/v1/search?q=the").body).value().data.empty());
}

TEST_F(DemoTest, aMessageIsAnsweredWhileThePhoneListens) {
  const auto all = sessions();
  const auto idle = std::ranges::find_if(all, [](const auto& session) { return !session.active; });
  ASSERT_NE(idle, all.end());
  const auto before = items(idle->id).size();
  support::EventClient stream(bridge.port(), token, 0);
  const std::string body = R"({"text":"What is new?","mode":"default","model":")" + idle->turnPreferences->model +
                           R"(","reasoningEffort":")" + idle->turnPreferences->reasoningEffort +
                           R"(","serviceTier":"default","attachments":[]})";
  const auto sent =
      support::send(bridge.port(),
                    {.method = "POST", .path = "/v1/sessions/" + idle->id + "/messages", .token = token, .body = body});
  ASSERT_EQ(sent.status, 200) << sent.body;
  std::string state;
  while (const auto text = stream.next()) {
    const auto event = wire::decode<wire::LiveEvent>(*text).value();
    if (event.type != "activity.updated" || event.sessionId != idle->id) continue;
    EXPECT_EQ(event.payload.value().at("tracked"), json::JSONValue(true))
        << "the lock screen does not follow the message";
    state = *event.payload.value().at("content").member("state")->string();
    if (state != "working") break;
  }
  EXPECT_TRUE(state == "done" || state == "needsInput") << state;
  const auto after = items(idle->id);
  ASSERT_GT(after.size(), before + 1);
  EXPECT_EQ(after[before].text, "What is new?");
}

}  // namespace
}  // namespace varnel::http
