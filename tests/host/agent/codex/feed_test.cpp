// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// What was recorded of the agent, played to the part that follows it.
#include "host/agent/codex/feed.h"

#include <gmock/gmock.h>

#include <fstream>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "host/agent/codex/answers.h"
#include "host/agent/codex/items.h"
#include "host/agent/codex/json_access.h"

namespace varnel::agent::codex {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Object = JSONValue::Object;
using Array = JSONValue::Array;
using State = wire::CodexTurnState;

struct Line {
  bool fromServer = false;
  JSONValue message;
};

std::vector<Line> recording(const std::string& name) {
  std::ifstream file(VARNEL_RECORDINGS "/" + name + ".jsonl");
  std::vector<Line> lines;
  for (std::string text; std::getline(file, text);) {
    const auto line = json::parse(text).value();
    lines.push_back({.fromServer = textOf(line, "dir") == "server", .message = memberOf(line, "message")});
  }
  if (lines.empty()) throw std::runtime_error("no recording " + name);
  return lines;
}

/// A feed at the other end of a recording. Everything that it shows has been read by the phone's codec.
class Replay {
 public:
  explicit Replay(const std::string& name) : lines(recording(name)) {}

  /// Plays up to and with the next message that fits; false when there is none.
  bool playTo(const std::function<bool(const JSONValue&)>& fits) {
    while (next < lines.size()) {
      const auto& line = lines[next++];
      if (!line.fromServer) continue;
      hear(line.message);
      checkReadable();
      if (fits(line.message)) return true;
    }
    return false;
  }
  bool playTo(const std::string& method) {
    return playTo([&](const auto& message) { return textOf(message, "method") == method; });
  }
  void playAll() {
    playTo([](const auto&) { return false; });
  }

  Thread& only() {
    EXPECT_EQ(feed.threads.size(), 1U);
    return feed.threads.begin()->second;
  }
  const Feed::Open& onlyRequest() {
    EXPECT_EQ(feed.requests.size(), 1U);
    return feed.requests.begin()->second;
  }
  State state() { return stateOf(only(), feed.hasRequests(only().id)); }
  /// The turns in the last answer to a "thread/read".
  [[nodiscard]] Array lastRead() const {
    Array turns;
    for (const auto& line : lines) {
      const auto& thread = memberOf(memberOf(line.message, "result"), "thread");
      if (!listOf(thread, "turns").empty()) turns = listOf(thread, "turns");
    }
    return turns;
  }

  std::vector<Line> lines;
  std::size_t next = 0;
  std::vector<Change> changes;
  std::vector<std::string> followed;
  Feed feed{{.now = [] { return 1'795'376'000.0; },
             .report = [this](const Change& change) { changes.push_back(change); },
             .follow = [this](const std::string& id) { followed.push_back(id); }}};

 private:
  void hear(const JSONValue& message) {
    const auto method = textOf(message, "method");
    const auto& params = memberOf(message, "params");
    if (method.empty()) {
      takeAnswer(memberOf(message, "result"));
    } else if (memberOf(message, "id").isNull()) {
      feed.notified(method, params);
    } else {
      EXPECT_TRUE(isQuestion(method)) << method;
      feed.asked("7.1", memberOf(message, "id"), method, params);
    }
  }
  /// What whoever asked would have made of it.
  void takeAnswer(const JSONValue& result) {
    const auto& record = memberOf(result, "thread");
    const auto id = textOf(record, "id");
    if (id.empty()) return;
    takeRecord(feed.add(id), record);
    if (result.member("model") != nullptr) takeStartSettings(feed.add(id), result);
  }
  void checkReadable() {
    for (const auto& [id, thread] : feed.threads) {
      const auto text = wire::encode(summaryOf(thread, feed.hasRequests(id)));
      ASSERT_TRUE(text);
      ASSERT_TRUE(wire::decode<wire::SessionSummary>(*text)) << *text;
      for (const auto& live : thread.live) checkItem(transcriptItem(live.item, live.turnId, live.at));
    }
    for (const auto& [id, open] : feed.requests) {
      ASSERT_TRUE(wire::decode<wire::PendingRequest>(wire::encode(open.request).value()));
    }
  }
  static void checkItem(const wire::TranscriptItem& item) {
    const auto text = wire::encode(item);
    ASSERT_TRUE(text);
    ASSERT_TRUE(wire::decode<wire::TranscriptItem>(*text)) << *text;
  }
};

wire::TranscriptItem itemOfType(const std::vector<wire::TranscriptItem>& items, const std::string& type) {
  const auto found = std::ranges::find(items, type, &wire::TranscriptItem::type);
  if (found == items.end()) throw std::runtime_error("no item " + type);
  return *found;
}

TEST(Feed, followsATurnFromItsBeginningToItsEnd) {
  Replay replay("paginated-history");
  ASSERT_TRUE(replay.playTo("turn/started"));
  EXPECT_EQ(replay.state(), State::Working);
  EXPECT_EQ(summaryOf(replay.only(), false).currentTurnId, replay.only().turn);
  ASSERT_TRUE(replay.playTo("item/agentMessage/delta"));
  EXPECT_FALSE(replay.only().memory.commentary.empty()) << "a message that grows is not shown";
  ASSERT_TRUE(replay.playTo("turn/completed"));
  EXPECT_EQ(replay.state(), State::Done);
  EXPECT_EQ(replay.only().turn, std::nullopt);
  EXPECT_EQ(replay.only().memory.commentary, "Result");
  replay.playAll();
  const auto usage = replay.only().memory.tokenUsage.value();
  EXPECT_EQ(usage.contextTokens, 1280);
  EXPECT_EQ(usage.contextWindow, 258'400);
  EXPECT_EQ(usage.inputTokens, 3600);
  EXPECT_EQ(replay.only().memory.sandbox, "workspace-write");
}

TEST(Transcript, tellsStoredItemsWithTheirTimes) {
  Replay replay("paginated-history");
  replay.playAll();
  const auto items = transcriptOf(replay.lastRead(), replay.only(), replay.feed.itemsToKeep);
  ASSERT_GE(items.size(), 6U);
  EXPECT_EQ(items[0].role, "user");
  EXPECT_EQ(items[0].text, "first #reason");
  EXPECT_NEAR(items[0].timestamp, 1'795'376'294.376, 0.001);
  const auto command = itemOfType(items, "commandExecution");
  EXPECT_EQ(command.title, "echo hi there; exit 3");
  EXPECT_EQ(command.status, "failed");
  EXPECT_NEAR(command.timestamp, 1'795'376'294.810, 0.001) << "what was seen live is not remembered";
  for (std::size_t i = 1; i < items.size(); ++i) EXPECT_LE(items[i - 1].timestamp, items[i].timestamp);
  EXPECT_EQ(textOf(command.detail->value(), "turnId"), "01a204c4-2a79-7c22-a7da-d3adf410c123");
}

TEST(Feed, asksAndHearsOfAnswers) {
  Replay replay("approvals-paginated");
  ASSERT_TRUE(replay.playTo("item/commandExecution/requestApproval"));
  EXPECT_EQ(replay.state(), State::NeedsInput);
  const auto request = replay.onlyRequest().request;
  EXPECT_EQ(request.id, "7.1-0");
  EXPECT_EQ(request.sessionId, replay.only().id);
  EXPECT_THAT(request.availableDecisions, ElementsAre("accept", "acceptForSession", "cancel"))
      << "a rule for good is offered, or a session's approval is not";
  const auto running = transcriptOf({}, replay.only(), {});
  EXPECT_EQ(itemOfType(running, "commandExecution").status, "inProgress");
  ASSERT_TRUE(replay.playTo("serverRequest/resolved"));
  EXPECT_TRUE(replay.feed.requests.empty());
  ASSERT_TRUE(replay.playTo("turn/completed"));
  EXPECT_EQ(replay.state(), State::Done);
  // The agent does not store what was declined.
  const Array turns{Object{{"id", *request.turnId}, {"items", Array{}}}};
  const auto kept = transcriptOf(turns, replay.only(), replay.feed.itemsToKeep);
  EXPECT_EQ(itemOfType(kept, "commandExecution").status, "declined");
  ASSERT_TRUE(replay.playTo("item/fileChange/requestApproval"));
  const auto change = replay.onlyRequest().request;
  EXPECT_THAT(json::write(change.params.at("changes")).value(), HasSubstr("new.txt"));
  EXPECT_THAT(change.availableDecisions, ElementsAre("accept", "acceptForSession", "decline"));
}

TEST(Feed, knowsEveryKindOfQuestion) {
  Replay questions("user-input");
  ASSERT_TRUE(questions.playTo("item/tool/requestUserInput"));
  EXPECT_EQ(questions.state(), State::NeedsInput);
  const auto question = questions.onlyRequest().request;
  EXPECT_TRUE(judge(question, Object{{"answers", Object{{"colour", Object{{"answers", Array{"Blue"}}}}}}}));
  EXPECT_FALSE(judge(question, Object{{"answers", Object{{"taste", Object{{"answers", Array{"Blue"}}}}}}}));
  EXPECT_FALSE(judge(question, Object{{"answers", Object{}}}));

  Replay others("permissions-elicitation");
  ASSERT_TRUE(others.playTo("item/permissions/requestApproval"));
  const auto permission = others.onlyRequest().request;
  const auto& asked = permission.params.at("permissions");
  EXPECT_TRUE(judge(permission, Object{{"permissions", asked}, {"scope", "turn"}}));
  EXPECT_TRUE(judge(permission, Object{{"permissions", Object{}}, {"scope", "turn"}}));
  EXPECT_FALSE(judge(permission, Object{{"permissions", Object{{"network", true}}}, {"scope", "turn"}}));
  EXPECT_FALSE(judge(permission, Object{{"permissions", asked}, {"scope", "ever"}}));
  ASSERT_TRUE(others.playTo("mcpServer/elicitation/request"));
  const auto elicitation = std::ranges::find(others.feed.requests, std::string("mcpServer/elicitation/request"),
                                             [](const auto& entry) { return entry.second.request.method; });
  ASSERT_NE(elicitation, others.feed.requests.end());
  EXPECT_TRUE(judge(elicitation->second.request, Object{{"action", "accept"}, {"content", JSONValue()}}));
  EXPECT_FALSE(judge(elicitation->second.request, Object{{"action", "approve"}}));
}

TEST(Answers, whatTheAgentWouldMisreadIsRefused) {
  wire::PendingRequest command;
  command.method = "item/commandExecution/requestApproval";
  for (const auto* word : {"accept", "acceptForSession", "decline", "cancel"}) {
    EXPECT_TRUE(judge(command, Object{{"decision", word}})) << word;
  }
  const Object amendment{{"acceptWithExecpolicyAmendment", Object{{"execpolicy_amendment", Array{"rm"}}}}};
  for (const JSONValue& wrong :
       std::initializer_list<JSONValue>{Object{}, "accept", Object{{"decision", "approved"}},
                                        Object{{"decision", true}}, Object{{"decision", amendment}}}) {
    const auto judged = judge(command, wrong);
    ASSERT_FALSE(judged) << json::write(wrong).value();
    EXPECT_EQ(judged.error().kind, AgentError::Kind::Invalid);
  }
}

TEST(Feed, mapsEndsOfTurnsToWords) {
  Replay replay("interrupt-steer-fail");
  std::set<State> seen;
  std::set<std::string> words;
  while (replay.playTo("turn/completed")) {
    seen.insert(replay.state());
    words.insert(summaryOf(replay.only(), false).latestCommentary);
    EXPECT_TRUE(replay.feed.requests.empty());
  }
  EXPECT_TRUE(seen.contains(State::Interrupted) && seen.contains(State::Failed) && seen.contains(State::Done));
  EXPECT_TRUE(words.contains("scripted failure")) << "the provider's own JSON is shown";
}

TEST(Feed, everyStateHasAWord) {
  Thread thread;
  const auto word = [&](const char* status, bool ended) {
    thread.memory.last = {.id = "t", .status = status, .hasEnded = ended, .error = ""};
    return stateOf(thread, false);
  };
  EXPECT_EQ(word("", true), State::Done);
  EXPECT_EQ(word("completed", true), State::Done);
  EXPECT_EQ(word("failed", true), State::Failed);
  EXPECT_EQ(word("interrupted", true), State::Interrupted);
  EXPECT_EQ(word("interrupted", false), State::Stale) << "its process died, or is another one";
  EXPECT_EQ(word("inProgress", false), State::Stale);
  takeStatus(thread, Object{{"type", "systemError"}});
  EXPECT_EQ(word("completed", true), State::Failed);
  takeStatus(thread, Object{{"type", "active"}, {"activeFlags", Array{"waitingOnUserInput"}}});
  EXPECT_EQ(stateOf(thread, false), State::NeedsInput);
  takeStatus(thread, Object{{"type", "active"}, {"activeFlags", Array{}}});
  EXPECT_EQ(stateOf(thread, false), State::Working);
  EXPECT_EQ(stateOf(thread, true), State::NeedsInput) << "a sub-agent's request shows no flag";
  takeStatus(thread, Object{{"type", "a new word"}});
  EXPECT_EQ(word("another", true), State::Done);
}

TEST(Feed, aRequestIsAskedAgainUnderTheSameName) {
  Replay replay("shared-server-client-C");
  replay.playAll();
  const auto request = replay.onlyRequest().request;
  replay.feed.disconnected();
  EXPECT_TRUE(replay.feed.requests.empty());
  replay.feed.asked("7.1", 1, request.method, JSONValue(request.params));
  EXPECT_EQ(replay.onlyRequest().request.id, request.id);
  replay.feed.asked("8.1", 1, request.method, JSONValue(request.params));
  EXPECT_EQ(replay.feed.requests.size(), 2U) << "another process counts from the beginning";
}

TEST(Feed, loadsNothingJustToShowIt) {
  std::vector<std::string> followed;
  Feed feed{{.now = [] { return 0.0; },
             .report = [](const Change&) {},
             .follow = [&](const std::string& id) { followed.push_back(id); }}};
  const auto tell = [&](const char* id, const char* type) {
    feed.notified("thread/status/changed", Object{{"threadId", id}, {"status", Object{{"type", type}}}});
  };
  tell("unknown", "notLoaded");
  feed.add("known");
  tell("known", "notLoaded");
  EXPECT_TRUE(followed.empty());
  tell("known", "active");
  tell("new", "active");
  EXPECT_THAT(followed, ElementsAre("known", "new"));
}

TEST(Feed, aSubAgentAsksWhereItsWorkBegan) {
  Replay replay("sub-agent");
  ASSERT_TRUE(replay.playTo("item/commandExecution/requestApproval"));
  const auto& open = replay.onlyRequest();
  EXPECT_NE(open.threadId, open.request.sessionId);
  EXPECT_EQ(open.request.sessionId, replay.only().id);
  EXPECT_EQ(replay.state(), State::NeedsInput);
  replay.playAll();
  EXPECT_TRUE(replay.feed.requests.empty());
}

TEST(Transcript, showsWhatWouldNotBeSeenAndCutsWhatIsTooMuch) {
  const auto plan = transcriptItem(Object{{"id", "t-plan"}, {"type", "plan"}, {"text", "# Plan"}}, "t", 1);
  EXPECT_EQ(plan.type, "agentMessage");
  EXPECT_EQ(plan.role, "assistant");
  const Array content{Object{{"type", "text"}, {"text", "Look at it"}},
                      Object{{"type", "text"}, {"text", std::string(kFileNote) + "/x (a.mp4)"}},
                      Object{{"type", "image"}, {"url", "data:image/png;base64," + std::string(5000, 'A')}}};
  const auto message = transcriptItem(Object{{"id", "u"}, {"type", "userMessage"}, {"content", content}}, "t", 1);
  EXPECT_EQ(message.text, "Look at it") << "the phone would keep its own copy beside this one";
  EXPECT_LT(message.detail->text().size(), 500U);
  std::string output;
  while (output.size() < 200'000) output += "héllo ";
  const auto run = transcriptItem(
      Object{{"id", "c"}, {"type", "commandExecution"}, {"command", "x"}, {"aggregatedOutput", output}}, "t", 1);
  EXPECT_THAT(textOf(run.detail->value(), "aggregatedOutput"), HasSubstr("bytes left out"));
  EXPECT_LT(run.detail->text().size(), 100'000U);
  EXPECT_TRUE(wire::decode<wire::TranscriptItem>(wire::encode(run).value()));
}

TEST(Transcript, readsTimesFromIds) {
  EXPECT_NEAR(timeOfId("01a204c4-29e8-77f2-be97-e88fff80c2da").value(), 1'795'376'294.376, 0.0001);
  for (const auto* id :
       {"item_2_1", "", "01a204c4-29e8-47f2-be97-e88fff80c2da", "zza204c4-29e8-77f2-be97-e88fff80c2da"}) {
    EXPECT_EQ(timeOfId(id), std::nullopt) << id;
  }
}

TEST(Memory, comesBackAsItWas) {
  Remembered memory{.sandbox = "read-only",
                    .approvalPolicy = "never",
                    .preferences = wire::ConversationPreferences{.mode = wire::CodexCollaborationMode::Plan,
                                                                 .model = "m",
                                                                 .reasoningEffort = "high",
                                                                 .serviceTier = "priority"},
                    .tokenUsage = wire::ConversationTokenUsage{.contextTokens = 1, .contextWindow = 2},
                    .plan = wire::ConversationPlan{.steps = {{.step = "s", .status = "pending"}}, .updatedAt = 4},
                    .last = {.id = "t", .status = "failed", .hasEnded = false, .error = "e"},
                    .commentary = "c",
                    .readAt = 7};
  const auto text = encodeMemory(memory);
  const auto again = decodeMemory(text);
  EXPECT_EQ(encodeMemory(again), text);
  EXPECT_EQ(again.preferences, memory.preferences);
  EXPECT_EQ(again.plan, memory.plan);
  EXPECT_EQ(again.last.error, "e");
  EXPECT_EQ(decodeMemory("not JSON").readAt, -1);
}

}  // namespace
}  // namespace varnel::agent::codex
