// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/reconcile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace varnel::transcript {
namespace {

using testing::ElementsAre;
using wire::TranscriptItem;
using Items = std::vector<TranscriptItem>;

TranscriptItem item(std::string id, std::optional<std::string> role, std::optional<std::string> text,
                    double timestamp = 1000) {
  TranscriptItem result;
  result.id = std::move(id);
  result.timestamp = timestamp;
  result.role = std::move(role);
  result.text = std::move(text);
  return result;
}

std::vector<std::string> ids(const Items& items) {
  std::vector<std::string> result;
  for (const auto& each : items) result.push_back(each.id);
  return result;
}

struct Case {
  std::string name;
  Items server;
  Items optimistic;
  std::vector<std::string> items;
  std::vector<std::string> remaining;
};

class Reconcile : public testing::TestWithParam<Case> {};

TEST_P(Reconcile, ShowsTheBridgesEntriesAndWhatItHasNotEchoed) {
  const auto& [name, server, optimistic, items, remaining] = GetParam();
  const auto result = reconcileTranscript(server, optimistic);
  EXPECT_EQ(ids(result.items), items);
  EXPECT_EQ(ids(result.remainingOptimistic), remaining);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Reconcile,
    testing::Values(
        Case{"NothingSent", {item("s1", "user", "a")}, {}, {"s1"}, {}},
        Case{"NothingOnTheBridge", {}, {item("o1", "user", "a")}, {"o1"}, {"o1"}},
        Case{"EchoNinetySecondsLater", {item("s1", "user", "a", 1090)}, {item("o1", "user", "a")}, {"s1"}, {}},
        Case{"EchoAtTheEdgeLater", {item("s1", "user", "a", 1120)}, {item("o1", "user", "a")}, {"s1"}, {}},
        Case{"EchoAtTheEdgeEarlier", {item("s1", "user", "a", 880)}, {item("o1", "user", "a")}, {"s1"}, {}},
        Case{"BeyondTheWindow", {item("s1", "user", "a", 1121)}, {item("o1", "user", "a")}, {"s1", "o1"}, {"o1"}},
        Case{"BeforeTheWindow", {item("s1", "user", "a", 879)}, {item("o1", "user", "a")}, {"s1", "o1"}, {"o1"}},
        Case{"TwoSentOneEchoed",
             {item("s1", "user", "a")},
             {item("o1", "user", "a"), item("o2", "user", "a")},
             {"s1", "o2"},
             {"o2"}},
        Case{"TwoSentTwoEchoed",
             {item("s1", "user", "a"), item("s2", "assistant", "b"), item("s3", "user", "a")},
             {item("o1", "user", "a"), item("o2", "user", "a")},
             {"s1", "s2", "s3"},
             {}},
        Case{"EchoPastAnEntryOutsideTheWindow",
             {item("s1", "user", "a", 1), item("s2", "user", "a")},
             {item("o1", "user", "a")},
             {"s1", "s2"},
             {}},
        Case{"OnlyUserEntriesAbsorb",
             {item("s1", "assistant", "a"), item("s2", std::nullopt, "a")},
             {item("o1", "user", "a")},
             {"s1", "s2", "o1"},
             {"o1"}},
        Case{"TheRoleOfTheSentMessageDoesNotMatter",
             {item("s1", "user", "a")},
             {item("o1", "assistant", "a")},
             {"s1"},
             {}},
        Case{"AbsentTextsAreEqual", {item("s1", "user", std::nullopt)}, {item("o1", "user", std::nullopt)}, {"s1"}, {}},
        Case{"AbsentIsNotEmpty", {item("s1", "user", std::nullopt)}, {item("o1", "user", "")}, {"s1", "o1"}, {"o1"}},
        Case{"TheRestKeepsItsOrder",
             {item("s1", "user", "b")},
             {item("o1", "user", "a"), item("o2", "user", "b"), item("o3", "user", "c")},
             {"s1", "o1", "o3"},
             {"o1", "o3"}}),
    [](const auto& each) { return each.param.name; });

TEST(Reconcile, IsStableOnceEverythingIsEchoed) {
  const auto first = reconcileTranscript({item("s1", "user", "a")}, {item("o1", "user", "a"), item("o2", "user", "b")});
  const auto second =
      reconcileTranscript({item("s1", "user", "a"), item("s2", "user", "b")}, first.remainingOptimistic);
  EXPECT_THAT(ids(second.items), ElementsAre("s1", "s2"));
  EXPECT_TRUE(second.remainingOptimistic.empty());
}

}  // namespace
}  // namespace varnel::transcript
