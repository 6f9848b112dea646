// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "host/agent/demo/library.h"
#include "tests/host/agent/demo_driver.h"

namespace varnel::agent::demo {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Ge;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::SizeIs;

/// What a record is after it went over the wire.
template <class Record>
void expectSurvivesTheWire(const Record& record, const std::string& what) {
  const auto text = wire::encode(record);
  ASSERT_TRUE(text) << what << ": " << text.error().message();
  const auto back = wire::decode<Record>(*text);
  ASSERT_TRUE(back) << what << ": " << back.error().message();
  EXPECT_TRUE(*back == record) << what;
}

std::string allTextOf(Driver& driver) {
  std::string text;
  for (const auto& summary : driver.sessions()) {
    for (const auto& item : driver.conversation(summary.id).items) text += item.text.value_or("") + "\n";
  }
  return text;
}

TEST(DemoContent, ShowsEveryStateAndEveryKindOfRequest) {
  Driver driver;
  std::set<wire::CodexTurnState> states;
  std::set<std::string> methods;
  bool openPlan = false;
  bool donePlan = false;
  for (const auto& summary : driver.sessions()) {
    states.insert(summary.state);
    if (summary.plan) (summary.plan->completed ? donePlan : openPlan) = true;
    for (const auto& request : driver.conversation(summary.id).pendingRequests) methods.insert(request.method);
    const bool works =
        summary.state == wire::CodexTurnState::Working || summary.state == wire::CodexTurnState::NeedsInput;
    EXPECT_EQ(summary.active, works) << summary.project;
    EXPECT_EQ(summary.currentTurnId.has_value(), works) << summary.project;
    EXPECT_LE(summary.updatedAt, kToday) << summary.project;
    EXPECT_FALSE(summary.latestCommentary.empty()) << summary.project;
    EXPECT_EQ(summary.latestCommentary.find_first_of("\n`*"), std::string::npos) << summary.latestCommentary;
  }
  EXPECT_THAT(driver.sessions(), SizeIs(Ge(12U)));
  EXPECT_THAT(states, SizeIs(6));
  EXPECT_THAT(methods, SizeIs(5));
  EXPECT_TRUE(openPlan && donePlan);
}

TEST(DemoContent, EveryRecordSurvivesTheWire) {
  Driver driver({.speed = 1000, .largeConversationItems = 40, .extraConversations = 3});
  std::vector<std::string> ids;
  for (const auto& summary : driver.sessions()) ids.push_back(summary.id);
  for (const auto& entry : driver.call(driver->archived()).value()) {
    expectSurvivesTheWire(entry, entry.id);
    ids.push_back(entry.id);
  }
  std::set<std::string> itemIds;
  std::size_t items = 0;
  for (const std::string& id : ids) {
    const Conversation conversation = driver.conversation(id);
    expectSurvivesTheWire(conversation.summary, id);
    for (const auto& item : conversation.items) {
      expectSurvivesTheWire(item, id + "/" + item.id);
      if (item.detail) EXPECT_TRUE(json::parse(item.detail->text())) << item.id;
      itemIds.insert(item.id);
    }
    items += conversation.items.size();
    for (const auto& request : conversation.pendingRequests) expectSurvivesTheWire(request, request.id);
  }
  EXPECT_EQ(itemIds.size(), items) << "item ids are not unique";
  expectSurvivesTheWire(wire::ProjectsEnvelope{driver.call(driver->projects()).value()}, "projects");
  expectSurvivesTheWire(driver.call(driver->rateLimit()).value(), "rate limit");
  expectSurvivesTheWire(driver.call(driver->usage(ids.front())).value(), "usage");
}

TEST(DemoContent, HasSomethingOfEverything) {
  Driver driver;
  const std::string text = allTextOf(driver);
  for (const char* mark : {"```cpp",  "```python", "```rust", "```typescript", "```sql", "```sh", "```diff", "```json",
                           "\n|---|", "- [x] ",    "- [ ] ",  "\n  - ",        "\n> ",   "\n# ",  "\n### ",  "\n---\n",
                           "設定",    "é",         "🎉",      "](http"}) {
    EXPECT_NE(text.find(mark), std::string::npos) << mark;
  }
  std::set<std::string> types;
  std::size_t longest = 0;
  for (const auto& summary : driver.sessions()) {
    for (const auto& item : driver.conversation(summary.id).items) {
      types.insert(item.type);
      longest = std::max(longest, item.text.value_or("").size());
    }
  }
  EXPECT_THAT(types, IsSupersetOf({"userMessage", "agentMessage", "commandExecution", "fileChange", "mcpToolCall",
                                   "reasoning", "collabAgentToolCall", "webSearch"}));
  EXPECT_GT(longest, 6000U);
}

TEST(DemoContent, ArchiveCatalogueProjectsAndUsageAreThere) {
  Driver driver;
  const auto archived = driver.call(driver->archived()).value();
  EXPECT_THAT(archived, SizeIs(60));
  EXPECT_TRUE(std::ranges::is_sorted(archived, std::greater<>(), &wire::ArchivedSession::updatedAt));
  EXPECT_THAT(driver.conversation(archived.back().id).items, SizeIs(2));

  const json::JSONValue models = driver.call(driver->models()).value();
  ASSERT_NE(models.member("data"), nullptr);
  EXPECT_THAT(*models.member("data")->array(), SizeIs(4));

  const auto projects = driver.call(driver->projects()).value();
  EXPECT_EQ(std::ranges::count_if(projects, &wire::ProjectRecord::highRisk), 1);

  const auto usage = driver.call(driver->usage(driver.idle())).value();
  EXPECT_EQ(usage.primary->windowDurationMins, 300);
  EXPECT_EQ(usage.secondary->windowDurationMins, 10080);
  EXPECT_EQ(usage.rateLimit->usedPercent, std::max(usage.primary->usedPercent, usage.secondary->usedPercent));
  ASSERT_THAT(usage.dailyUsageBuckets, SizeIs(30));
  EXPECT_EQ(usage.dailyUsageBuckets.back().startDate, "2026-11-18");
  EXPECT_EQ(usage.dailyUsageBuckets.front().startDate, "2026-10-20");
  ASSERT_TRUE(usage.threadUsage);
  EXPECT_FALSE(usage.threadUsage->groups.empty());
  EXPECT_FALSE(driver.call(driver->usage("nobody")).value().threadUsage);
}

TEST(DemoContent, TheLongerWindowTurnsOverWhenItsTimeHasCome) {
  double now = kToday;
  Driver driver({.speed = 1000, .now = [&now] { return now; }});
  const auto before = driver.call(driver->usage({})).value();
  now = *before.primary->resetsAt + 1;
  const auto after = driver.call(driver->usage({})).value();
  EXPECT_EQ(after.primary->usedPercent, 0);
  EXPECT_EQ(*after.primary->resetsAt, *before.primary->resetsAt + 300 * 60);
  EXPECT_EQ(after.secondary->usedPercent, before.secondary->usedPercent);
}

TEST(DemoContent, ALargeConversationAndALongListAreQuick) {
  const auto begin = std::chrono::steady_clock::now();
  Driver driver({.speed = 1000, .largeConversationItems = 20'000, .extraConversations = 10'000});
  const auto made = std::chrono::steady_clock::now();
  const std::string id = driver.named("Move the atlas, shard by shard");
  EXPECT_THAT(driver.conversation(id).items, SizeIs(20'000));
  EXPECT_THAT(driver.sessions(), SizeIs(Ge(10'012U)));
  const auto answered = std::chrono::steady_clock::now();
  // Far above what it takes, so that a sanitizer on a busy machine passes; one pass too many over the items does not.
  EXPECT_LT(made - begin, std::chrono::seconds(15));
  EXPECT_LT(answered - made, std::chrono::seconds(3));
  RecordProperty("makeMs", std::to_string(std::chrono::duration<double, std::milli>(made - begin).count()));
  RecordProperty("answerMs", std::to_string(std::chrono::duration<double, std::milli>(answered - made).count()));

  ASSERT_TRUE(driver.call(driver->sendMessage(id, Driver::message("And one more shard, please"))));
  driver.waitForState(id, wire::CodexTurnState::Done);
  EXPECT_THAT(lastAnswer(driver.conversation(id)), HasSubstr("And one more shard, please"));
}

}  // namespace
}  // namespace varnel::agent::demo
