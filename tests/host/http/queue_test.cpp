// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Messages that wait for the end of a turn: each goes out once, whatever happens in between.
#include <gmock/gmock.h>

#include "core/live/operations.h"
#include "core/wire/codec.h"
#include "core/wire/queue.h"
#include "core/wire/session_detail.h"
#include "host/agent/demo/demo_agent.h"
#include "tests/support/http_client.h"
#include "tests/support/running_bridge.h"

namespace varnel::http {
namespace {

using namespace std::chrono_literals;
using support::Response;
using support::RunningBridge;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace operations = live::operations;

class QueueTest : public ::testing::Test {
 protected:
  void SetUp() override {
    bridge.run([](auto parts) { parts.agent.addSession("busy", 10).active = true; });
  }

  Response call(const live::Call& operation, const std::string& key = "") {
    const wire::PairingCredentials credentials{
        .baseURL = base::Url::parse(bridge.baseURL()).value(), .deviceId = "d", .token = token};
    const auto made = key.empty() ? "KEY-" + std::to_string(++keys) : key;
    const auto request = live::buildRequest(operation, credentials, made).value();
    support::Headers headers;
    for (const auto& header : request.headers) headers.emplace_back(header.name, header.value);
    return support::send(bridge.port(), {.method = request.method,
                                         .path = request.url.substr(bridge.baseURL().size()),
                                         .body = request.body,
                                         .headers = headers});
  }
  static wire::ConversationPreferences preferences() {
    return {.mode = wire::CodexCollaborationMode::Default, .model = "deep", .reasoningEffort = "low"};
  }
  Response queue(const std::string& text, const std::string& key = "",
                 std::vector<wire::UploadedAttachment> files = {}) {
    return call(operations::queueMessage("busy", text, preferences(), std::move(files)), key);
  }
  std::string queued(const std::string& text) { return wire::decode<wire::QueuedMessage>(queue(text).body).value().id; }
  std::vector<wire::QueuedMessage> waiting() {
    return wire::decodeSessionDetail(call(operations::session("busy")).body).value().queued->value();
  }
  std::vector<std::string> texts() {
    std::vector<std::string> found;
    for (const auto& message : waiting()) found.push_back(message.text);
    return found;
  }
  void endTurn() {
    bridge.run([](auto parts) {
      parts.agent.summaries[0].active = false;
      parts.agent.change(agent::Change::Kind::Turn, "busy");
    });
  }
  bool eventuallyCalled(const std::vector<std::string>& calls) {
    return bridge.eventually([&](auto parts) { return parts.agent.calls == calls; });
  }

  RunningBridge bridge;
  std::string token = bridge.pair();
  int keys = 0;
};

TEST_F(QueueTest, oneATurnInOrderAndNoneBeforeItsEnd) {
  EXPECT_EQ(queue("first").status, 200);
  const auto first = waiting().at(0).id;
  EXPECT_EQ(queue("second").status, 200);
  bridge.run([](auto parts) { parts.agent.change(agent::Change::Kind::Item, "busy"); });
  EXPECT_THAT(texts(), ElementsAre("first", "second"));
  EXPECT_TRUE(eventuallyCalled({}));
  endTurn();
  ASSERT_TRUE(eventuallyCalled({"message busy first"}));
  EXPECT_EQ(bridge.run([](auto parts) { return parts.agent.inputs[0].clientMessageId; }), first);
  ASSERT_TRUE(bridge.eventually([](auto parts) { return parts.bridge.queue.of("busy").size() == 1; }));
  EXPECT_THAT(texts(), ElementsAre("second"));
  endTurn();
  ASSERT_TRUE(eventuallyCalled({"message busy first", "message busy second"}));
  ASSERT_TRUE(bridge.eventually([](auto parts) { return parts.bridge.queue.of("busy").empty(); }));
}

TEST_F(QueueTest, whatMayHaveArrivedBeforeACrashIsLookedForFirst) {
  const auto taken = queued("taken");
  const auto lost = queued("lost");
  bridge.run([&](auto parts) {
    auto echo = support::item("echo", "userMessage", "taken");
    echo.role = "user";
    echo.detail = json::JSONValue(json::JSONValue::Object{{"clientId", taken}});
    parts.agent.items["busy"].push_back(echo);
    for (const auto& id : {taken, lost}) parts.store.queue.markAttempted(id, true);
  });
  endTurn();
  ASSERT_TRUE(bridge.eventually([](auto parts) { return parts.bridge.queue.of("busy").size() == 1; }));
  EXPECT_TRUE(eventuallyCalled({})) << "a message went out twice";
  endTurn();
  EXPECT_TRUE(eventuallyCalled({"message busy lost"}));
}

TEST_F(QueueTest, whatIsTakenBackIsNotSent) {
  const auto first = queued("first");
  queued("second");
  queued("third");
  const auto taken = wire::decode<wire::QueueEnvelope>(call(operations::unqueue("busy", first)).body).value();
  EXPECT_EQ(taken.queued.at(0).text, "first");
  EXPECT_EQ(call(operations::unqueue("busy", first)).status, 404);
  EXPECT_THAT(texts(), ElementsAre("second", "third"));
  EXPECT_EQ(call(operations::unqueue("busy", {})).status, 200);
  endTurn();
  EXPECT_TRUE(eventuallyCalled({}));

  bridge.run([](auto parts) { parts.agent.hold(); });
  const auto leaving = queued("leaving");
  ASSERT_TRUE(eventuallyCalled({"message busy leaving"}));
  EXPECT_EQ(call(operations::unqueue("busy", leaving)).status, 409);
  bridge.run([](auto parts) { parts.agent.release(); });
}

TEST_F(QueueTest, refusedOnesStayWithTheReasonAndUnreachableOnesAreTriedAgain) {
  using Kind = agent::AgentError::Kind;
  queued("first");
  queued("second");
  bridge.run([](auto parts) { parts.agent.failure = agent::AgentError{Kind::Unavailable, "Gone."}; });
  endTurn();
  ASSERT_TRUE(eventuallyCalled({"message busy first"}));
  bridge.run([](auto parts) { parts.agent.failure = agent::AgentError{Kind::Conflict, "Held elsewhere."}; });
  ASSERT_TRUE(bridge.eventually([](auto parts) { return parts.bridge.queue.of("busy")[1].failure.has_value(); }));
  EXPECT_EQ(waiting()[0].failure, "Held elsewhere.");
  const auto calls = bridge.run([](auto parts) { return parts.agent.calls; });
  EXPECT_THAT(calls, ElementsAre("message busy first", "message busy first", "message busy second"));
  EXPECT_EQ(call(operations::unqueue("busy", waiting()[0].id)).status, 200);
}

TEST_F(QueueTest, takesOnlyWhatCouldBeSentNow) {
  auto unknown = preferences();
  unknown.model = "nobody";
  EXPECT_EQ(call(operations::queueMessage("busy", "Hi", unknown, {})).status, 400);
  EXPECT_EQ(queue(" \n").status, 400);
  EXPECT_EQ(call(operations::queueMessage("nobody", "Hi", preferences(), {})).status, 404);
  EXPECT_EQ(queue("once", "K").status, 200);
  EXPECT_EQ(queue("once", "K").status, 200);
  EXPECT_EQ(waiting().size(), 1U);
}

TEST_F(QueueTest, filesOfAWaitingMessageAreKept) {
  const auto upload = support::send(bridge.port(), {.method = "POST",
                                                    .path = "/v1/sessions/busy/uploads",
                                                    .token = token,
                                                    .body = "bytes",
                                                    .headers = {{"Content-Type", "image/png"}, {"X-File-Name", "a"}}});
  const auto file = wire::decode<wire::UploadedAttachment>(upload.body).value();
  ASSERT_EQ(queue("look", "", {file}).status, 200);
  const auto sweep = [&] {
    bridge.advance(25h);
    return bridge.run([](auto parts) {
      parts.bridge.attachments.sweep();
      return parts.store.uploads.ids().size();
    });
  };
  EXPECT_EQ(sweep(), 1U);
  call(operations::unqueue("busy", {}));
  EXPECT_EQ(sweep(), 0U) << "a file that was taken back stays for ever";
}

TEST(DemoQueue, aQueuedMessageBeginsTheNextTurn) {
  RunningBridge bridge({}, [](auto executor) {
    return std::make_unique<agent::demo::DemoAgent>(executor, agent::demo::DemoOptions{.seed = 7, .speed = 100});
  });
  const auto token = bridge.pair();
  const auto get = [&](const std::string& path) {
    return support::send(bridge.port(), {.path = path, .token = token}).body;
  };
  const auto sessions = wire::decode<wire::SessionsEnvelope>(get("/v1/sessions")).value().sessions;
  const auto busy = std::ranges::find(sessions, wire::CodexTurnState::Working, &wire::SessionSummary::state);
  ASSERT_NE(busy, sessions.end());
  const auto body = wire::encode(wire::MessageBody{.text = "Then the next thing.",
                                                   .mode = "default",
                                                   .model = busy->turnPreferences->model,
                                                   .reasoningEffort = busy->turnPreferences->reasoningEffort,
                                                   .serviceTier = "default"});
  const std::string path = "/v1/sessions/" + busy->id;
  ASSERT_EQ(
      support::send(bridge.port(), {.method = "POST", .path = path + "/queue", .token = token, .body = *body}).status,
      200);
  EXPECT_EQ(wire::decodeSessionDetail(get(path)).value().queued->value().size(), 1U);
  support::send(bridge.port(), {.method = "POST", .path = path + "/interrupt", .token = token, .body = "{}"});
  const auto id = busy->id;
  ASSERT_TRUE(bridge.eventually([id](auto parts) { return parts.bridge.queue.of(id).empty(); }));
  const auto items = wire::decodeSessionDetail(get(path)).value().items->value();
  EXPECT_EQ(std::ranges::count(items, "Then the next thing.", &wire::TranscriptItem::text), 1);
}

}  // namespace
}  // namespace varnel::http
