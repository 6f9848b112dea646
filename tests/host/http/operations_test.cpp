// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Every operation as a phone calls it, against an agent that notes what it is asked.
#include "core/live/operations.h"

#include <gmock/gmock.h>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "core/wire/search.h"
#include "core/wire/session_detail.h"
#include "core/wire/usage.h"
#include "tests/support/http_client.h"
#include "tests/support/running_bridge.h"

namespace varnel::http {
namespace {

using namespace std::chrono_literals;
using support::Response;
using support::RunningBridge;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace operations = live::operations;

class OperationsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    bridge.run([](auto parts) {
      parts.agent.addSession("old", 10);
      parts.agent.addSession("new one", 20);
    });
  }

  /// Sends a call as the phone's own request builder writes it.
  Response call(const live::Call& operation, const std::string& key = "") {
    const wire::PairingCredentials credentials{
        .baseURL = base::Url::parse(bridge.baseURL()).value(), .deviceId = "d", .token = token};
    const auto request = live::buildRequest(operation, credentials, key.empty() ? freshKey() : key).value();
    support::Headers headers;
    for (const auto& header : request.headers) headers.emplace_back(header.name, header.value);
    return support::send(bridge.port(), {.method = request.method,
                                         .path = request.url.substr(bridge.baseURL().size()),
                                         .body = request.body,
                                         .headers = headers});
  }
  std::string freshKey() { return "KEY-" + std::to_string(++keys); }
  std::vector<std::string> calls() {
    return bridge.run([](auto parts) { return std::exchange(parts.agent.calls, {}); });
  }
  template <class Record>
  Record read(const Response& response) {
    EXPECT_EQ(response.status, 200) << response.body;
    auto record = wire::decode<Record>(response.body);
    EXPECT_TRUE(record) << record.error().message();
    return record.value();
  }
  static wire::ConversationPreferences preferences() {
    return {.mode = wire::CodexCollaborationMode::Plan, .model = "deep", .reasoningEffort = "low", .serviceTier = {}};
  }
  static std::string errorOf(const Response& response) {
    return wire::decode<wire::ServerError>(response.body).value().error;
  }

  RunningBridge bridge{{.handlerTime = 400ms}};
  std::string token = bridge.pair();
  int keys = 0;
};

TEST_F(OperationsTest, readsDecodeAsThePhoneReadsThem) {
  const auto sessions = read<wire::SessionsEnvelope>(call(operations::sessions())).sessions;
  ASSERT_EQ(sessions.size(), 2U);
  EXPECT_EQ(sessions[0].id, "new one");
  EXPECT_EQ(read<wire::ProjectsEnvelope>(call(operations::projects())).projects.size(), 2U);
  EXPECT_NE(json::parse(call(operations::models()).body).value().member("data"), nullptr);
  read<wire::RateLimitEnvelope>(call(operations::rateLimit()));
  EXPECT_EQ(read<wire::UsageEnvelope>(call(operations::usage("a b"))).fetchedAt, 5);
  read<wire::UsageEnvelope>(call(operations::usage({})));
  EXPECT_THAT(calls(), ElementsAre("usage a b", "usage -"));
  const auto detail = wire::decodeSessionDetail(call(operations::session("new one")).body).value();
  EXPECT_EQ(detail.items->value()[0].text, "Question of new one");
  EXPECT_EQ(detail.session->value().id, "new one");
  EXPECT_TRUE(detail.pendingRequests->value().empty());
  EXPECT_EQ(call(operations::session("?no/such")).status, 404);
}

TEST_F(OperationsTest, commandsReachTheAgentAndAnswerWithJson) {
  const std::vector<std::pair<live::Call, std::string>> commands{
      {operations::sendMessage("old", "Hi", preferences(), {}), "message old Hi"},
      {operations::startGoal("old", "Win", preferences(), {}), "goal old Win"},
      {operations::updateSettings("old", preferences()), "settings old deep low -"},
      {operations::interrupt("old"), "interrupt old"},
      {operations::rename("old", "Better"), "rename old Better"},
      {operations::archive("old", false), "archive old"},
      {operations::archive("old", true), "unarchive old"},
      {operations::resolve("r:1?", json::JSONValue::Object{{"decision", "accept"}}),
       R"(resolve r:1? {"decision":"accept"})"},
  };
  for (const auto& [command, expected] : commands) {
    const auto response = call(command);
    EXPECT_EQ(response.status, 200) << expected << response.body;
    EXPECT_EQ(response.body, "{}") << expected;
    EXPECT_THAT(calls(), ElementsAre(expected));
  }
  const auto inputs = bridge.run([](auto parts) { return parts.agent.inputs; });
  EXPECT_EQ(inputs[0].preferences, preferences());
  EXPECT_EQ(inputs[0].clientMessageId, "KEY-1") << "the agent cannot know a repeated message";
}

TEST_F(OperationsTest, agentsRefusalsKeepTheirWordsAndTheirKind) {
  using Kind = agent::AgentError::Kind;
  for (const auto& [kind, status] : std::map<Kind, int>{
           {Kind::NotFound, 404}, {Kind::Conflict, 409}, {Kind::Invalid, 400}, {Kind::Unavailable, 503}}) {
    bridge.run([&](auto parts) { parts.agent.failure = agent::AgentError{.kind = kind, .text = "Already answered."}; });
    const auto response = call(operations::resolve("r", true));
    EXPECT_EQ(response.status, status);
    EXPECT_EQ(errorOf(response), "Already answered.");
  }
}

TEST_F(OperationsTest, whatMakesNoSenseNeverReachesTheAgent) {
  auto unknown = preferences();
  unknown.model = "nobody";
  wire::NewSessionBody risky{.cwd = "/",
                             .mode = "default",
                             .model = {},
                             .reasoningEffort = {},
                             .sandbox = "read-only",
                             .approvalPolicy = "never",
                             .acknowledgeHighRisk = false,
                             .prompt = "Go"};
  auto elsewhere = risky;
  elsewhere.cwd = "/nowhere";
  auto policy = risky;
  policy.approvalPolicy = "always";
  const std::vector<live::Call> refused{
      operations::sendMessage("old", "Hi", unknown, {}),
      operations::sendMessage("old", " \n", preferences(), {}),
      operations::sendMessage("old", "Hi", preferences(),
                              {{.id = "x", .kind = "", .name = "", .mimeType = "", .size = 1}}),
      operations::updateSettings("old", unknown),
      operations::rename("old", "  "),
      operations::createSession(risky),
      operations::createSession(elsewhere),
      operations::createSession(policy),
      operations::track("old", false, "dance"),
      operations::track({}, true, {}),
  };
  for (const auto& operation : refused) EXPECT_EQ(call(operation).status, 400) << operation.body->value_or("");
  EXPECT_EQ(call(operations::track("nobody", true, {})).status, 404);
  const auto broken = support::send(
      bridge.port(), {.method = "POST", .path = "/v1/sessions/old/name", .token = token, .body = R"({"name":5})"});
  EXPECT_EQ(broken.status, 400);
  EXPECT_THAT(errorOf(broken), HasSubstr("name"));
  EXPECT_TRUE(calls().empty());
}

TEST(Policy, forbidsWhatTheHostDoesNotAllow) {
  RunningBridge strict({}, {}, {.forbidden = {"danger-full-access", "never"}});
  const auto phone = strict.pair();
  const auto begin = [&](const std::string& sandbox, const std::string& policy) {
    const wire::NewSessionBody body{.cwd = "/srv/safe",
                                    .mode = "default",
                                    .model = {},
                                    .reasoningEffort = {},
                                    .sandbox = sandbox,
                                    .approvalPolicy = policy,
                                    .acknowledgeHighRisk = true,
                                    .prompt = "Go"};
    return support::send(strict.port(),
                         {.method = "POST", .path = "/v1/sessions", .token = phone, .body = wire::encode(body).value()})
        .status;
  };
  EXPECT_EQ(begin("danger-full-access", "on-request"), 403);
  EXPECT_EQ(begin("read-only", "never"), 403);
  EXPECT_EQ(strict.run([](auto parts) { return parts.agent.calls.size(); }), 0U);
  EXPECT_EQ(begin("workspace-write", "on-request"), 200);
}

TEST_F(OperationsTest, filesThatWaitHaveABound) {
  bridge.run([](auto parts) {
    const wire::UploadedAttachment large{.id = "large", .kind = "file", .name = "l", .mimeType = "x/y", .size = 0};
    auto stored = large;
    stored.size = service::Attachments::kUnsentBytes - 10;
    parts.store.uploads.add({.record = stored, .sessionId = "old"}, 0);
  });
  const auto upload = [&](const std::string& bytes) {
    return support::send(bridge.port(),
                         {.method = "POST", .path = "/v1/sessions/old/uploads", .token = token, .body = bytes});
  };
  EXPECT_EQ(upload("eleven more").status, 413);
  EXPECT_EQ(upload("ten bytes!").status, 200);
  bridge.run([](auto parts) { parts.store.uploads.markSent("large"); });
  EXPECT_EQ(upload("eleven more").status, 200);
}

TEST_F(OperationsTest, newSessionsFillInTheCataloguesDefaults) {
  const auto response = call(operations::createSession({.cwd = "/",
                                                        .mode = "plan",
                                                        .model = {},
                                                        .reasoningEffort = {},
                                                        .sandbox = "workspace-write",
                                                        .approvalPolicy = "on-request",
                                                        .acknowledgeHighRisk = true,
                                                        .prompt = "Go"}));
  EXPECT_EQ(read<wire::NewSessionResult>(response).threadId, "new");
  EXPECT_THAT(calls(), ElementsAre("create / workspace-write on-request"));
  const auto input = bridge.run([](auto parts) { return parts.agent.inputs.back(); });
  EXPECT_EQ(input.preferences.model, "deep");
  EXPECT_EQ(input.preferences.reasoningEffort, "medium");
  EXPECT_EQ(input.text, "Go");
}

TEST_F(OperationsTest, repeatedRequestsAreDoneOnce) {
  const auto message = operations::sendMessage("old", "Hi", preferences(), {});
  EXPECT_EQ(call(message, "K").status, 200);
  EXPECT_EQ(call(message, "K").body, "{}");
  EXPECT_EQ(calls().size(), 1U);
  EXPECT_EQ(call(operations::sendMessage("old", "Other", preferences(), {}), "K").status, 422);
  EXPECT_EQ(call(operations::sendMessage("new%20one", "Hi", preferences(), {}), "K").status, 422);
  bridge.run(
      [](auto parts) { parts.agent.failure = agent::AgentError{agent::AgentError::Kind::Unavailable, "Gone."}; });
  EXPECT_EQ(call(message, "K2").status, 503);
  bridge.run([](auto parts) { parts.agent.failure.reset(); });
  EXPECT_EQ(call(message, "K2").status, 200) << "a failure is remembered";
  EXPECT_EQ(calls().size(), 2U);
}

TEST_F(OperationsTest, readingAgainIsNoRepetition) {
  const support::Request read{.path = "/v1/projects", .token = token, .headers = {{"Idempotency-Key", "R"}}};
  const auto before = support::send(bridge.port(), read);
  bridge.run([](auto parts) { parts.agent.projectRecords.clear(); });
  EXPECT_NE(support::send(bridge.port(), read).body, before.body);
}

TEST_F(OperationsTest, aFullDiskNeitherUndoesNorRepeatsACommand) {
  const auto sql = [&](const std::string& text) {
    bridge.run([&](auto parts) { parts.store.database().execute(text); });
  };
  for (const auto* table : {"answers", "tracking", "uploads"}) {
    sql("CREATE TRIGGER full_" + std::string(table) + " BEFORE INSERT ON " + table +
        " BEGIN SELECT RAISE(ABORT, 'the disk is full'); END");
  }
  const auto message = operations::sendMessage("old", "Hi", preferences(), {});
  EXPECT_EQ(call(message, "K").status, 200) << "the agent has taken it";
  EXPECT_EQ(calls().size(), 1U);
  const support::Request upload{.method = "POST",
                                .path = "/v1/sessions/old/uploads",
                                .token = token,
                                .body = "bytes",
                                .headers = {{"Idempotency-Key", "U"}}};
  EXPECT_EQ(support::send(bridge.port(), upload).status, 500);
  for (const auto* table : {"answers", "tracking", "uploads"}) sql("DROP TRIGGER full_" + std::string(table));
  EXPECT_EQ(support::send(bridge.port(), upload).status, 200) << "the key is in flight for ever";
}

TEST_F(OperationsTest, slowAgentsAreNotAskedTwiceAndTheirAnswerIsKept) {
  bridge.run([](auto parts) { parts.agent.hold(); });
  const auto message = operations::sendMessage("old", "Hi", preferences(), {});
  EXPECT_EQ(call(message, "K").status, 504);
  EXPECT_EQ(call(message, "K").status, 409);
  bridge.run([](auto parts) { parts.agent.release(); });
  ASSERT_TRUE(bridge.eventually([](auto parts) {
    const auto device = parts.store.devices.list().front().id;
    return parts.store.answers.find(device, "K", store::Digest{}).has_value();
  }));
  EXPECT_EQ(call(message, "K").body, "{}");
  EXPECT_EQ(calls().size(), 1U);
}

TEST_F(OperationsTest, marksLieOverTheAgentsSummaries) {
  EXPECT_EQ(call(operations::track("old", true, {})).status, 200);
  call(operations::sendMessage("new%20one", "Hi", preferences(), {}));
  auto sessions = read<wire::SessionsEnvelope>(call(operations::sessions())).sessions;
  EXPECT_EQ(sessions[0].id, "old") << "pinned ones come first";
  EXPECT_TRUE(sessions[0].pinned);
  EXPECT_EQ(sessions[1].tracked, true) << "a conversation that was written to from the phone is followed";
  EXPECT_TRUE(wire::decodeSessionDetail(call(operations::session("old")).body).value().session->value().pinned);
  call(operations::track({}, false, "clear"));
  call(operations::track("old", false, {}));
  sessions = read<wire::SessionsEnvelope>(call(operations::sessions())).sessions;
  EXPECT_FALSE(sessions[1].pinned);
  EXPECT_EQ(sessions[0].tracked, false);
}

TEST_F(OperationsTest, whatThePhoneCouldNotReadIsNotSent) {
  ::testing::internal::CaptureStderr();
  bridge.run([](auto parts) { parts.agent.summaries[0].latestCommentary = "\xff\xfe"; });
  EXPECT_EQ(call(operations::sessions()).status, 500);
  EXPECT_EQ(call(operations::session("old")).status, 500);
  EXPECT_EQ(call(operations::session("new one")).status, 200) << "another conversation suffers";
  EXPECT_THAT(::testing::internal::GetCapturedStderr(), HasSubstr("].latestCommentary: text is not UTF-8"));
}

TEST_F(OperationsTest, archiveAndSearchComeInPages) {
  bridge.run([](auto parts) {
    parts.agent.change(agent::Change::Kind::List, "old");
    for (int i = 0; i < 45; ++i) {
      const std::string id = "archived " + std::to_string(i);
      parts.agent.archivedSessions.push_back({.id = id, .name = id, .cwd = {}, .updatedAt = i / 7});
      parts.agent.items[id] = {support::item("x", "commandExecution", "needle in tool output")};
      parts.agent.change(agent::Change::Kind::List, id);
    }
  });
  std::set<std::string> archived;
  std::optional<std::string> cursor;
  int pages = 0;
  do {
    const auto page = read<wire::ArchivedSessionsEnvelope>(call(operations::archivedSessions(cursor)));
    for (const auto& session : page.data) archived.insert(session.id);
    cursor = page.nextCursor;
  } while (++pages < 10 && cursor);
  EXPECT_EQ(archived.size(), 45U);
  EXPECT_EQ(pages, 3);

  std::set<std::string> found;
  pages = 0;
  do {
    const auto page = read<wire::SearchEnvelope>(call(operations::search("Needle in", cursor)));
    for (const auto& result : page.data) {
      EXPECT_EQ(result.thread.archived, true);
      EXPECT_EQ(result.occurrences.value().size(), 1U);
      found.insert(result.thread.id);
    }
    cursor = page.nextCursor;
  } while (++pages < 10 && cursor);
  EXPECT_EQ(found, archived);
  const auto message = read<wire::SearchEnvelope>(call(operations::search("QUESTION OF OLD", {})));
  ASSERT_EQ(message.data.size(), 1U);
  EXPECT_EQ(message.data[0].occurrences.value()[0].itemId, "old-1");
  EXPECT_EQ(message.data[0].occurrences.value()[0].turnId, "old-1");
  EXPECT_TRUE(read<wire::SearchEnvelope>(call(operations::search("nowhere", {}))).data.empty());

  EXPECT_EQ(call(operations::archivedSessions("bad")).status, 400);
  const auto first = read<wire::SearchEnvelope>(call(operations::search("needle", {})));
  EXPECT_EQ(call(operations::search("other", first.nextCursor)).status, 400);
  EXPECT_EQ(call(operations::search(" ", {})).status, 400);
}

TEST_F(OperationsTest, filesAreKeptAndSentWithTheirMessage) {
  const auto upload = [&](const char* session, const std::string& bytes, const std::string& key, const char* name) {
    return support::send(bridge.port(),
                         {.method = "POST",
                          .path = std::string("/v1/sessions/") + session + "/uploads",
                          .token = token,
                          .body = bytes,
                          .headers = {{"Content-Type", "image/png"}, {"X-File-Name", name}, {"Idempotency-Key", key}}});
  };
  const std::string bytes(300'000, '\x89');
  const auto file = read<wire::UploadedAttachment>(upload("old", bytes, "F", "UTF-8''na%C3%AFve%20a.png"));
  EXPECT_EQ(file.name, "naïve a.png");
  EXPECT_EQ(file.kind, "image");
  EXPECT_EQ(file.size, 300'000);
  EXPECT_EQ(read<wire::UploadedAttachment>(upload("old", bytes, "F", "UTF-8''na%C3%AFve%20a.png")), file);
  EXPECT_EQ(upload("old", bytes + "x", "F", "UTF-8''na%C3%AFve%20a.png").status, 422);
  EXPECT_EQ(read<wire::UploadedAttachment>(upload("old", "", "E", "../../etc/passwd")).name, "passwd");
  EXPECT_EQ(upload("nobody", bytes, "G", "a").status, 404);
  for (const auto* name : {"UTF-8''a%00b", "UTF-8''a%1Bb", "UTF-8''a%C2%9Bb"}) {
    EXPECT_EQ(upload("old", bytes, freshKey(), name).status, 400) << name;
  }
  const support::Request strange{.method = "POST",
                                 .path = "/v1/sessions/old/uploads",
                                 .token = token,
                                 .body = "x",
                                 .headers = {{"Content-Type", "image/\xff"}}};
  EXPECT_EQ(support::send(bridge.port(), strange).status, 400);
  EXPECT_EQ(bridge.run([](auto parts) { return parts.store.uploads.ids().size(); }), 2U);

  EXPECT_EQ(call(operations::sendMessage("new%20one", "Look", preferences(), {file})).status, 400)
      << "a file of another conversation";
  EXPECT_EQ(call(operations::sendMessage("old", "", preferences(), {file})).status, 200);
  const auto sent = bridge.run([](auto parts) { return parts.agent.inputs.back().attachments.at(0); });
  EXPECT_EQ(sent.record, file);
  EXPECT_EQ(std::filesystem::file_size(sent.path), 300'000U);
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(sent.path).permissions()) & 0077U, 0U);
  bridge.advance(25h);
  bridge.run([](auto parts) { parts.bridge.attachments.sweep(); });
  EXPECT_TRUE(std::filesystem::exists(sent.path)) << "a file that was sent is gone";
  EXPECT_EQ(bridge.run([](auto parts) { return parts.store.uploads.ids().size(); }), 1U) << "an unsent one stays";
}

}  // namespace
}  // namespace varnel::http
