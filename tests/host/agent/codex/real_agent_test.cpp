// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Everything that a phone does, done with the real agent.
#include <gmock/gmock.h>

#include <fstream>
#include <thread>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "core/wire/search.h"
#include "core/wire/usage.h"
#include "host/agent/codex/json_access.h"
#include "tests/host/agent/codex/real_agent.h"

namespace varnel::agent::codex {
namespace {

using ::testing::HasSubstr;
using Object = JSONValue::Object;
using Array = JSONValue::Array;
using State = wire::CodexTurnState;

TEST_F(RealAgentTest, messagesAreAnsweredInMarkdownWithAPlanAndTheirTimes) {
  const auto id = begin("Hello");
  auto now = untilState(id, State::Done);
  EXPECT_EQ(now.items.at(0).text, "Hello");
  EXPECT_THAT(now.last("agentMessage").text.value(), HasSubstr("The change is **done**."));
  EXPECT_EQ(now.session.latestCommentary, "Result");
  EXPECT_EQ(now.session.project, "work");
  const auto before = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
  EXPECT_NEAR(now.items[0].timestamp, before, 30);
  EXPECT_EQ(say(id, "And now #steps").status, 200);
  now = until(id, [](const Detail& seen) { return seen.session.plan && seen.session.plan->completed; });
  EXPECT_EQ(now.session.plan.value().steps.at(1).step, "Write");
  untilState(id, State::Done);
  EXPECT_EQ(detail(id).session.tokenUsage.value().contextWindow, 258'400);
  // A plan that is proposed is a message like others.
  EXPECT_EQ(say(id, "#propose", "plan").status, 200);
  now = until(id, [](const Detail& seen) { return seen.says("1. Read"); });
  EXPECT_EQ(untilState(id, State::Done).session.turnPreferences.value().mode, wire::CodexCollaborationMode::Plan);
}

TEST_F(RealAgentTest, commandsAreAcceptedForTheSessionOrDeclined) {
  const auto id = begin("#sudo touch first");
  auto request = untilAsked(id);
  EXPECT_EQ(request.method, "item/commandExecution/requestApproval");
  EXPECT_EQ(answer(request, Object{{"decision", "approved"}}).status, 400) << "the agent would take that for a no";
  EXPECT_EQ(answer(request, Object{{"decision", "decline"}}).status, 200);
  EXPECT_EQ(answer(request, Object{{"decision", "accept"}}).status, 409);
  auto now = untilState(id, State::Done);
  EXPECT_EQ(now.last("commandExecution").status, "declined") << "the agent forgets it, the bridge does not";
  EXPECT_FALSE(std::filesystem::exists(work / "first"));

  say(id, "#sudo touch second");
  EXPECT_EQ(answer(untilAsked(id), Object{{"decision", "accept"}}).status, 200);
  untilState(id, State::Done);
  EXPECT_TRUE(std::filesystem::exists(work / "second"));

  say(id, "#sudo touch third");
  EXPECT_EQ(answer(untilAsked(id), Object{{"decision", "acceptForSession"}}).status, 200);
  untilState(id, State::Done);
  std::filesystem::remove(work / "third");
  say(id, "#sudo touch third");
  until(id, [&](const Detail&) { return std::filesystem::exists(work / "third"); });
  EXPECT_TRUE(untilState(id, State::Done).requests.empty());
}

TEST_F(RealAgentTest, changesAndPermissionsAndQuestionsAreAsked) {
  const auto outside = folder.path() / "outside.txt";
  const auto id = begin("#patch " + outside.string() + " hi", "on-request", "read-only");
  auto request = untilAsked(id);
  EXPECT_EQ(request.method, "item/fileChange/requestApproval");
  EXPECT_THAT(json::write(request.params.at("changes")).value(), HasSubstr("outside.txt")) << "approved unseen";
  EXPECT_EQ(answer(request, Object{{"decision", "decline"}}).status, 200);
  EXPECT_EQ(untilState(id, State::Done).last("fileChange").status, "declined");
  say(id, "#patch " + outside.string() + " hi");
  EXPECT_EQ(answer(untilAsked(id), Object{{"decision", "accept"}}).status, 200);
  untilState(id, State::Done);
  EXPECT_TRUE(std::filesystem::exists(outside));

  say(id, "#permit /var/tmp");
  request = untilAsked(id);
  EXPECT_EQ(request.method, "item/permissions/requestApproval");
  EXPECT_EQ(answer(request, Object{{"permissions", Object{{"network", true}}}, {"scope", "turn"}}).status, 400);
  EXPECT_EQ(answer(request, Object{{"permissions", request.params.at("permissions")}, {"scope", "turn"}}).status, 200);
  EXPECT_TRUE(untilState(id, State::Done).says("/var/tmp"));

  say(id, "#ask", "plan");
  request = untilAsked(id);
  EXPECT_EQ(request.method, "item/tool/requestUserInput");
  const Object blue{{"answers", Object{{"colour", Object{{"answers", Array{"Blue"}}}}}}};
  EXPECT_EQ(answer(request, Object{{"answers", Object{}}}).status, 400);
  EXPECT_EQ(answer(request, blue).status, 200);
  EXPECT_TRUE(untilState(id, State::Done).says("Blue"));
}

TEST_F(RealAgentTest, formsOfOtherServersAreAsked) {
  stopBridge();
  killServer();
  startModel(
      {"--lines", "\n[mcp_servers.form]\ncommand = \"python3\"\nargs = [\"" VARNEL_SUPPORT_FOLDER "/mcp_form.py\"]\n"});
  startBridge();
  const auto id = begin("#tool form form");
  const auto request = untilAsked(id);
  EXPECT_EQ(request.method, "mcpServer/elicitation/request");
  EXPECT_EQ(answer(request, Object{{"action", "yes"}}).status, 400);
  EXPECT_EQ(answer(request, Object{{"action", "decline"}, {"content", JSONValue()}}).status, 200);
  EXPECT_TRUE(untilState(id, State::Done).says("The user said decline."));
}

TEST_F(RealAgentTest, stoppingEndsTheTurnTheCommandAndTheGoal) {
  const auto id = begin("#run sleep 271");
  const auto running = until(id, [](const Detail& seen) {
    return std::ranges::count(seen.items, "commandExecution", &wire::TranscriptItem::type) == 1;
  });
  EXPECT_EQ(running.last("commandExecution").status, "inProgress");
  EXPECT_EQ(post("/v1/sessions/" + id + "/interrupt").status, 200);
  untilState(id, State::Interrupted);
  const auto isSleeping = [] {
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
      std::ifstream file(entry.path() / "cmdline");
      std::string words((std::istreambuf_iterator<char>(file)), {});
      if (words.contains(std::string("sleep\0"
                                     "271",
                                     9)))
        return true;
    }
    return false;
  };
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (isSleeping() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  EXPECT_FALSE(isSleeping()) << "the command goes on beside the turn";
  EXPECT_EQ(post("/v1/sessions/" + id + "/interrupt").status, 409);

  auto goal = message("Reach it #keep-slow");
  goal.erase("text");
  goal["objective"] = "Reach it keep-slow";
  EXPECT_EQ(post("/v1/sessions/" + id + "/goal", goal).status, 200);
  until(id, [](const Detail& seen) { return seen.says("Reach it keep-slow"); });
  // The objective's own turn is short; the goal's own goes on until it is stopped.
  until(id, [](const Detail& seen) { return seen.says("word3"); });
  EXPECT_EQ(post("/v1/sessions/" + id + "/interrupt").status, 200);
  untilState(id, State::Interrupted);
  say(id, "#say hello");
  until(id, [](const Detail& seen) { return seen.says("hello") && seen.session.state == State::Done; });
}

TEST_F(RealAgentTest, failuresAreSaidInWords) {
  const auto id = begin("#fail 400");
  const auto now = untilState(id, State::Failed);
  EXPECT_EQ(now.session.latestCommentary, "scripted failure");
  say(id, "#say better");
  EXPECT_TRUE(untilState(id, State::Done).says("better"));
}

TEST_F(RealAgentTest, picturesReachTheModelAndFilesAreNamed) {
  const auto id = begin("Hello");
  untilState(id, State::Done);
  const auto upload = [&](const std::string& bytes, const char* type, const char* name) {
    const auto response = support::send(bridge->port(), {.method = "POST",
                                                         .path = "/v1/sessions/" + id + "/uploads",
                                                         .token = token,
                                                         .body = bytes,
                                                         .headers = {{"Content-Type", type}, {"X-File-Name", name}}});
    return json::parse(response.body).value();
  };
  // One pixel.
  const std::string png(
      "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\2\0\0\0\x90wS\xde\0\0\0\x0cIDATx\x9c"
      "c\xf8\xcf\xc0\0\0\3\1\1\0\xc9\xfe\x92\xef\0\0\0\0IEND\xae\x42\x60\x82",
      69);
  const auto picture = upload(png, "image/png", "a.png");
  const auto film = upload("film", "video/mp4", "a.mp4");
  EXPECT_EQ(say(id, "#pictures", "default", {picture, film}).status, 200);
  const auto now = until(id, [](const Detail& seen) { return seen.says("picture(s)"); });
  EXPECT_TRUE(now.says("Received 1 picture(s).")) << now.last("agentMessage").text.value();
  EXPECT_EQ(now.last("userMessage").text, "#pictures") << "the phone would show its own copy beside it";
}

TEST_F(RealAgentTest, ofTwoPhonesOneAnswers) {
  const auto other = bridge->pair("Other");
  const auto id = begin("#sudo touch raced");
  const auto request = untilAsked(id);
  const std::string path = "/v1/requests/" + request.id + "/resolve";
  std::vector<int> statuses(2);
  std::vector<std::thread> phones;
  for (std::size_t i = 0; i < 2; ++i) {
    phones.emplace_back([&, i] {
      statuses[i] = support::send(bridge->port(), {.method = "POST",
                                                   .path = path,
                                                   .token = i == 0 ? token : other,
                                                   .body = R"({"result":{"decision":"accept"}})"})
                        .status;
    });
  }
  for (auto& phone : phones) phone.join();
  std::ranges::sort(statuses);
  EXPECT_EQ(statuses, (std::vector<int>{200, 409}));
  untilState(id, State::Done);
}

TEST_F(RealAgentTest, theArchiveAndTheSearchFollow) {
  const auto id = begin("#run echo needle-in-the-output");
  untilState(id, State::Done);
  EXPECT_EQ(post("/v1/sessions/" + id + "/name", Object{{"name", "  Sewing  "}}).status, 200);
  EXPECT_EQ(detail(id).session.project, "Sewing");
  const auto find = [&](const std::string& words) {
    return wire::decode<wire::SearchEnvelope>(get("/v1/search?q=" + words).body).value().data;
  };
  EXPECT_EQ(find("sewing").size(), 1U);
  const auto found = find("needle-in-the-OUTPUT");
  ASSERT_EQ(found.size(), 1U);
  EXPECT_FALSE(found[0].occurrences.value().empty());
  EXPECT_EQ(post("/v1/sessions/" + id + "/archive").status, 200);
  EXPECT_TRUE(sessions().empty());
  EXPECT_EQ(say(id, "Hello").status, 409);
  EXPECT_EQ(post("/v1/sessions/" + id + "/name", Object{{"name", "x"}}).status, 409);
  EXPECT_THAT(get("/v1/sessions/archived").body, HasSubstr("Sewing"));
  EXPECT_EQ(find("sewing").at(0).thread.archived, true);
  EXPECT_EQ(detail(id).items.at(0).role, "user");
  EXPECT_EQ(post("/v1/sessions/" + id + "/unarchive").status, 200);
  EXPECT_EQ(post("/v1/sessions/" + id + "/unarchive").status, 409);
  say(id, "#say again");
  until(id, [](const Detail& seen) { return seen.says("again"); });
}

TEST_F(RealAgentTest, aBridgeThatComesBackKnowsWhatWasAsked) {
  const auto id = begin("#steps");
  untilState(id, State::Done);
  say(id, "#sudo touch later");
  const auto request = untilAsked(id);
  stopBridge();
  startBridge();
  const auto now = detail(id);
  EXPECT_EQ(now.session.state, State::NeedsInput);
  ASSERT_EQ(now.requests.size(), 1U);
  EXPECT_EQ(now.requests[0].id, request.id);
  EXPECT_EQ(now.last("commandExecution").status, "inProgress") << "what is at work is forgotten";
  EXPECT_EQ(now.session.plan.value().completed, true);
  EXPECT_EQ(now.session.turnPreferences.value().model, "gpt-5.5");
  EXPECT_EQ(answer(now.requests[0], Object{{"decision", "accept"}}).status, 200);
  untilState(id, State::Done);
  EXPECT_TRUE(std::filesystem::exists(work / "later"));
  stopBridge();
  startBridge();
  EXPECT_EQ(answer(request, Object{{"decision", "accept"}}).status, 409);
  EXPECT_EQ(untilState(id, State::Done).session.tokenUsage.value().contextTokens, 1280);
}

TEST_F(RealAgentTest, anAgentThatIsKilledComesBackWithItsSettings) {
  const auto id = begin("#say hello", "never");
  untilState(id, State::Done);
  say(id, "#slow 200");
  until(id, [](const Detail& seen) { return seen.says("word4"); });
  const auto before = serverProcess();
  killServer();
  const auto stale = until(id, [&](const Detail& seen) { return !seen.session.active && serverProcess() != before; });
  EXPECT_EQ(untilState(id, State::Stale).session.currentTurnId, std::nullopt);
  EXPECT_TRUE(stale.requests.empty());
  EXPECT_EQ(say(id, "#say back again").status, 200);
  until(id, [](const Detail& seen) { return seen.says("back again") && seen.session.state == State::Done; });
  EXPECT_EQ(memory->agentMemory.threads().at(id).contains("\"never\""), true);
}

TEST_F(RealAgentTest, whatOthersBeginIsListedAndMayBeWrittenByOneOnly) {
  Process other({program(), "exec", "--skip-git-repo-check", "#slow 40"}, environment(), work.string());
  other.closeInput();
  const auto listed = untilListed([](const auto& session) { return session.state == State::Stale; });
  EXPECT_EQ(say(listed.id, "Hello").status, 409);
  EXPECT_EQ(detail(listed.id).items.at(0).text, "#slow 40");
  EXPECT_EQ(other.finish(), 0);
  untilListed([](const auto& session) { return session.state == State::Done; });
  EXPECT_EQ(say(listed.id, "#say mine now").status, 200);
  until(listed.id, [](const Detail& seen) { return seen.says("mine now"); });
}

TEST_F(RealAgentTest, aQueuedMessageGoesOnceWhenTheTurnEnds) {
  const auto id = begin("#slow 10");
  EXPECT_EQ(post("/v1/sessions/" + id + "/queue", message("#say from the queue")).status, 200);
  EXPECT_EQ(post("/v1/sessions/" + id + "/queue", message("#say the second one")).status, 200);
  EXPECT_EQ(detail(id).queued.size(), 2U);
  const auto now = until(id, [](const Detail& seen) { return seen.says("the second one") && seen.queued.empty(); });
  EXPECT_EQ(std::ranges::count(now.items, "#say from the queue", &wire::TranscriptItem::text), 1);
  EXPECT_TRUE(now.says("word9")) << "it did not wait";
}

TEST_F(RealAgentTest, settingsHoldForTheNextTurnAndTheAccountIsRead) {
  EXPECT_EQ(wire::decode<wire::UsageEnvelope>(get("/v1/usage").body).value().dailyUsageBuckets.size(), 0U);
  stopBridge();
  killServer();
  startModel({"--signed-in"});
  startBridge();
  const auto id = begin("#say hello");
  untilState(id, State::Done);
  auto settings = message("");
  settings["reasoningEffort"] = "high";
  settings["mode"] = "plan";
  EXPECT_EQ(post("/v1/sessions/" + id + "/settings", settings).status, 200);
  const auto preferences = detail(id).session.turnPreferences.value();
  EXPECT_EQ(preferences.reasoningEffort, "high");
  EXPECT_EQ(preferences.mode, wire::CodexCollaborationMode::Plan);
  const auto usage = wire::decode<wire::UsageEnvelope>(get("/v1/usage?sessionId=" + id).body).value();
  EXPECT_EQ(usage.primary.value().usedPercent, 42);
  EXPECT_EQ(usage.rateLimit.value().usedPercent, 42);
  EXPECT_EQ(usage.planType, "plus");
  EXPECT_EQ(usage.resetCredits.value().availableCount, 2);
  EXPECT_EQ(usage.summary.lifetimeTokens, 123'456);
  EXPECT_EQ(usage.threadUsage.value().groups.at(0).totalTokens, 1280);
}

}  // namespace
}  // namespace varnel::agent::codex
