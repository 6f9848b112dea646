// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/agent/demo_driver.h"

namespace varnel::agent::demo {
namespace {

using testing::HasSubstr;
using wire::CodexTurnState;

NewSession newSession(std::string text) {
  return {.cwd = "/home/mara/src/lantern/",
          .sandbox = "workspace-write",
          .approvalPolicy = "on-request",
          .firstTurn = Driver::message(std::move(text))};
}

template <class T>
AgentError::Kind kindOf(const Result<T>& result) {
  EXPECT_FALSE(result) << "it was taken";
  return result ? AgentError::Kind::Unavailable : result.error().kind;
}

TEST(DemoSession, ANewOneAppearsAndWorks) {
  Driver driver;
  driver.changes.clear();
  const std::string id = driver.call(driver->createSession(newSession("Explain the log"))).value();
  EXPECT_TRUE(std::ranges::any_of(driver.changes,
                                  [&](const Change& c) { return c.kind == Change::Kind::List && c.sessionId == id; }));
  EXPECT_EQ(driver.sessions().front().id, id) << "the newest stands first";
  const auto summary = driver.conversation(id).summary;
  EXPECT_EQ(summary.project, "lantern");
  EXPECT_FALSE(summary.name);
  EXPECT_EQ(summary.turnPreferences->model, "gpt-5.6-sol");
  EXPECT_EQ(summary.turnPreferences->reasoningEffort, "medium");
  driver.waitForState(id, CodexTurnState::Done);
  EXPECT_THAT(lastAnswer(driver.conversation(id)), HasSubstr("Explain the log"));
}

TEST(DemoSession, RefusesWordsTheAgentDoesNotKnow) {
  Driver driver;
  const std::size_t before = driver.sessions().size();
  const auto kindWith = [&](const std::function<void(NewSession&)>& change) {
    NewSession session = newSession("Hello");
    change(session);
    return kindOf(driver.call(driver->createSession(session)));
  };
  using enum AgentError::Kind;
  EXPECT_EQ(kindWith([](NewSession& s) { s.cwd = "src"; }), Invalid);
  EXPECT_EQ(kindWith([](NewSession& s) { s.sandbox = "none"; }), Invalid);
  EXPECT_EQ(kindWith([](NewSession& s) { s.approvalPolicy = "always"; }), Invalid);
  EXPECT_EQ(kindWith([](NewSession& s) { s.firstTurn.preferences.model = "gpt-0"; }), Invalid);
  EXPECT_EQ(kindWith([](NewSession& s) { s.firstTurn.preferences.reasoningEffort = "huge"; }), Invalid);
  EXPECT_EQ(kindWith([](NewSession& s) { s.firstTurn.preferences.serviceTier = "first class"; }), Invalid);
  EXPECT_EQ(kindWith([](NewSession& s) { s.firstTurn.text = " \n"; }), Invalid);
  EXPECT_EQ(driver.sessions().size(), before);
}

TEST(DemoSession, SandboxAndApprovalPolicyAreKept) {
  Driver driver;
  NewSession never = newSession("Deploy it");
  never.approvalPolicy = "never";
  const std::string trusting = driver.call(driver->createSession(never)).value();
  driver.waitForState(trusting, CodexTurnState::Done);
  EXPECT_THAT(lastAnswer(driver.conversation(trusting)), HasSubstr("It is out."));

  NewSession readOnly = newSession("Rename it everywhere");
  readOnly.sandbox = "read-only";
  const std::string careful = driver.call(driver->createSession(readOnly)).value();
  driver.waitForState(careful, CodexTurnState::NeedsInput);
  EXPECT_EQ(driver.conversation(careful).pendingRequests.at(0).method, "item/fileChange/requestApproval");
}

TEST(DemoSession, SettingsAreCheckedAndKept) {
  Driver driver;
  const std::string id = driver.idle();
  wire::ConversationPreferences wanted{.mode = wire::CodexCollaborationMode::Plan,
                                       .model = "gpt-5.6-terra",
                                       .reasoningEffort = "high",
                                       .serviceTier = "priority"};
  ASSERT_TRUE(driver.call(driver->updateSettings(id, wanted)));
  EXPECT_EQ(driver.conversation(id).summary.turnPreferences, wanted);
  wanted.serviceTier = "default";
  ASSERT_TRUE(driver.call(driver->updateSettings(id, wanted)));
  EXPECT_FALSE(driver.conversation(id).summary.turnPreferences->serviceTier);
  wanted.model = "gpt-5.6-luna";
  EXPECT_EQ(kindOf(driver.call(driver->updateSettings(id, wanted))), AgentError::Kind::Invalid)
      << "that model has no high effort";
}

TEST(DemoSession, IsRenamedArchivedAndBroughtBack) {
  Driver driver;
  using enum AgentError::Kind;
  const std::string id = driver.named("Soak test the write path");
  ASSERT_TRUE(driver.call(driver->rename(id, "  A new name \n")));
  EXPECT_EQ(driver.conversation(id).summary.name, "A new name");
  EXPECT_EQ(driver.conversation(id).summary.project, "A new name");
  EXPECT_EQ(kindOf(driver.call(driver->rename(id, " "))), Invalid);

  ASSERT_EQ(driver.conversation(id).summary.state, CodexTurnState::Working);
  ASSERT_TRUE(driver.call(driver->archive(id))) << "a running one is stopped first";
  EXPECT_EQ(driver.conversation(id).summary.state, CodexTurnState::Interrupted);
  EXPECT_EQ(kindOf(driver.call(driver->archive(id))), Conflict);
  EXPECT_EQ(kindOf(driver.call(driver->sendMessage(id, Driver::message("Hello")))), Conflict);
  EXPECT_EQ(driver.call(driver->archived()).value().front().id, id);
  EXPECT_TRUE(std::ranges::none_of(driver.sessions(), [&](const auto& s) { return s.id == id; }));

  ASSERT_TRUE(driver.call(driver->unarchive(id)));
  EXPECT_EQ(kindOf(driver.call(driver->unarchive(id))), Conflict);
  EXPECT_TRUE(std::ranges::any_of(driver.sessions(), [&](const auto& s) { return s.id == id; }));
}

TEST(DemoSession, OneThatDoesNotExistIsNotFound) {
  Driver driver;
  using enum AgentError::Kind;
  EXPECT_EQ(kindOf(driver.call(driver->conversation("x"))), NotFound);
  EXPECT_EQ(kindOf(driver.call(driver->sendMessage("x", Driver::message("Hello")))), NotFound);
  EXPECT_EQ(kindOf(driver.call(driver->startGoal("x", Driver::message("Hello")))), NotFound);
  EXPECT_EQ(kindOf(driver.call(driver->updateSettings("x", {}))), NotFound);
  EXPECT_EQ(kindOf(driver.call(driver->interrupt("x"))), NotFound);
  EXPECT_EQ(kindOf(driver.call(driver->rename("x", "y"))), NotFound);
  EXPECT_EQ(kindOf(driver.call(driver->archive("x"))), NotFound);
  EXPECT_EQ(kindOf(driver.call(driver->unarchive("x"))), NotFound);
}

/// Everything there is after some commands.
std::vector<Conversation> played(std::uint64_t seed) {
  Driver driver({.seed = seed, .speed = 1000});
  const std::string id = driver.idle();
  for (const char* text : {"Run the tests", "Deploy it", "Tidy up a little"}) {
    EXPECT_TRUE(driver.call(driver->sendMessage(id, Driver::message(text))));
    driver.lookUntil(id, [](const Conversation& now) { return now.summary.state != CodexTurnState::Working; });
    for (const auto& request : driver.conversation(id).pendingRequests) {
      const json::JSONValue::Object yes{{"decision", "accept"}};
      EXPECT_TRUE(driver.call(driver->resolve(request.id, yes)));
    }
    driver.waitForState(id, CodexTurnState::Done);
  }
  const std::string created = driver.call(driver->createSession(newSession("Explain the log"))).value();
  driver.waitForState(created, CodexTurnState::Done);
  std::vector<Conversation> all;
  for (const auto& summary : driver.sessions()) all.push_back(driver.conversation(summary.id));
  return all;
}

TEST(DemoSession, EqualSeedsAndCommandsGiveEqualConversations) {
  const auto first = played(5);
  const auto second = played(5);
  ASSERT_EQ(first.size(), second.size());
  for (std::size_t i = 0; i < first.size(); ++i) {
    EXPECT_TRUE(first[i].summary == second[i].summary) << first[i].summary.project;
    EXPECT_TRUE(first[i].items == second[i].items) << first[i].summary.project;
    EXPECT_TRUE(first[i].pendingRequests == second[i].pendingRequests) << first[i].summary.project;
  }
  EXPECT_NE(played(6).front().summary.id, first.front().summary.id);
}

TEST(DemoSession, AfterTheStopNothingIsReportedAndItMayGoAtOnce) {
  boost::asio::io_context io;
  std::size_t reported = 0;
  auto agent = std::make_unique<DemoAgent>(io.get_executor(), DemoOptions{.speed = 1000});
  boost::asio::co_spawn(io, agent->start([&](const Change&) { ++reported; }), boost::asio::detached);
  boost::asio::co_spawn(io, agent->createSession(newSession("Run the tests")), boost::asio::detached);
  while (reported < 5) ASSERT_EQ(io.run_one_for(std::chrono::seconds(5)), 1U);
  agent->stop();
  reported = 0;
  io.run_for(std::chrono::milliseconds(30));
  EXPECT_EQ(reported, 0U);
  // Timers that are already due must find nobody rather than a freed agent.
  agent.reset();
  io.restart();
  io.run_for(std::chrono::milliseconds(30));
}

}  // namespace
}  // namespace varnel::agent::demo
