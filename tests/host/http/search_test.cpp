// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// The search index against an agent that fails or is slow.
#include <gmock/gmock.h>

#include <ctime>
#include <future>

#include "core/wire/codec.h"
#include "core/wire/search.h"
#include "tests/support/http_client.h"
#include "tests/support/running_bridge.h"

namespace varnel::http {
namespace {

using namespace std::chrono_literals;
using support::RunningBridge;
using Kind = agent::Change::Kind;

class SearchTest : public ::testing::Test {
 protected:
  void SetUp() override {
    bridge.run([](auto parts) { parts.agent.addSession("a", 1); });
    change("a");
  }
  void change(const std::string& id) {
    bridge.run([&](auto parts) { parts.agent.change(Kind::Item, id); });
  }
  /// How many conversations hold the words.
  std::size_t found(const std::string& words) {
    const auto response = support::send(bridge.port(), {.path = "/v1/search?q=" + words, .token = token});
    EXPECT_EQ(response.status, 200) << response.body;
    return wire::decode<wire::SearchEnvelope>(response.body).value().data.size();
  }

  RunningBridge bridge;
  std::string token = bridge.pair();
};

TEST_F(SearchTest, keepsAndCompletesTheIndexWhenTheAgentFails) {
  ASSERT_EQ(found("Question"), 1U);
  bridge.run([](auto parts) {
    parts.agent.readFailure = agent::AgentError{.kind = agent::AgentError::Kind::Unavailable, .text = "Away."};
    parts.agent.items["a"].push_back(support::item("late", "agentMessage", "needle"));
    parts.agent.change(Kind::Lost, {});
    parts.agent.change(Kind::Item, "a");
  });
  EXPECT_EQ(found("needle"), 0U);
  EXPECT_EQ(found("Question"), 1U) << "what was indexed is gone";
  bridge.run([](auto parts) { parts.agent.readFailure.reset(); });
  const auto end = std::chrono::steady_clock::now() + 10s;
  while (found("needle") == 0 && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(50ms);
  EXPECT_EQ(found("needle"), 1U) << "what changed meanwhile is forgotten";
}

TEST_F(SearchTest, searchesThatWaitLeaveTheProcessorAlone) {
  ASSERT_EQ(found("Question"), 1U);
  bridge.run([](auto parts) { parts.agent.holdList(); });
  change("a");
  std::vector<std::future<std::size_t>> searches;
  for (int i = 0; i < 2; ++i) searches.push_back(std::async(std::launch::async, [&] { return found("Question"); }));
  // The events and the index; the second search may come after that, which nothing tells.
  ASSERT_TRUE(bridge.eventually([](auto parts) { return parts.agent.listsWaiting() == 2; }));
  std::this_thread::sleep_for(300ms);
  const auto before = std::clock();
  std::this_thread::sleep_for(600ms);
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC * 3 / 10) << "they wake each other";
  bridge.run([](auto parts) { parts.agent.release(); });
  for (auto& search : searches) EXPECT_EQ(search.get(), 1U);
}

}  // namespace
}  // namespace varnel::http
