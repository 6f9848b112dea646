// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/reconnect.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/live/load_generations.h"

namespace varnel::live {
namespace {

std::vector<long> waits(const std::vector<StreamEnd>& ends) {
  ReconnectPolicy policy;
  std::vector<long> result;
  for (const auto end : ends) result.push_back(policy.waitAfter(end).count());
  return result;
}

constexpr auto kNotBuilt = StreamEnd::NotBuilt;
constexpr auto kBroken = StreamEnd::Broken;

TEST(Reconnect, DoublesUpToHalfAMinuteWhileNoStreamCanBeAskedFor) {
  EXPECT_EQ(waits(std::vector(8, kNotBuilt)), (std::vector<long>{1, 2, 4, 8, 16, 30, 30, 30}));
}

TEST(Reconnect, WaitsOneSecondAfterAConnectionHoweverOftenItBreaks) {
  EXPECT_EQ(waits(std::vector(4, kBroken)), (std::vector<long>{1, 1, 1, 1}));
}

TEST(Reconnect, StartsTheRowAtTwoAfterAConnection) {
  EXPECT_EQ(waits({kBroken, kNotBuilt, kNotBuilt, kNotBuilt}), (std::vector<long>{1, 2, 4, 8}));
  EXPECT_EQ(waits({kNotBuilt, kNotBuilt, kNotBuilt, kBroken, kNotBuilt}), (std::vector<long>{1, 2, 4, 1, 2}));
}

TEST(LoadGenerations, OnlyTheLoadBegunLastIsCurrent) {
  LoadGenerations generations;
  const auto first = generations.begin("a");
  const auto other = generations.begin("b");
  EXPECT_TRUE(generations.isCurrent("a", first));
  const auto second = generations.begin("a");
  EXPECT_FALSE(generations.isCurrent("a", first));
  EXPECT_TRUE(generations.isCurrent("a", second));
  EXPECT_TRUE(generations.isCurrent("b", other));
}

TEST(LoadGenerations, ALoadFromBeforeAnUnpairingNeverBecomesCurrentAgain) {
  LoadGenerations generations;
  const auto before = generations.begin("a");
  generations.forgetAll();
  EXPECT_FALSE(generations.isCurrent("a", before));
  generations.begin("a");
  EXPECT_FALSE(generations.isCurrent("a", before));
}

}  // namespace
}  // namespace varnel::live
