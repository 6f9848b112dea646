// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/lists/list_diff.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace varnel::lists {
namespace {

using Origins = std::vector<std::optional<std::size_t>>;
using Edits = std::vector<ListEdit>;

constexpr auto kNew = std::nullopt;

struct Case {
  std::string name;
  std::size_t oldSize;
  Origins origins;
  Edits edits;
};

class ListDiff : public testing::TestWithParam<Case> {};

TEST_P(ListDiff, TouchesAsFewRowsAsCanBe) {
  EXPECT_TRUE(editsFor(GetParam().oldSize, GetParam().origins) == GetParam().edits);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ListDiff,
    testing::Values(Case{"NothingToNothing", 0, {}, {}}, Case{"Same", 3, {0, 1, 2}, {}},
                    Case{"FirstLoad", 0, {kNew, kNew}, {InsertRows{0, 2}}}, Case{"AllGone", 3, {}, {RemoveRows{0, 3}}},
                    Case{"Append", 2, {0, 1, kNew}, {InsertRows{2, 1}}},
                    Case{"RunsFromTheBack", 6, {1, 4}, {RemoveRows{5, 1}, RemoveRows{2, 2}, RemoveRows{0, 1}}},
                    Case{"ToTheTop", 4, {3, 0, 1, 2}, {MoveRow{3, 0}}},
                    Case{"ToTheEnd", 4, {1, 2, 3, 0}, {MoveRow{0, 3}}},
                    Case{"AllNew", 2, {kNew, kNew}, {RemoveRows{0, 2}, InsertRows{0, 2}}}),
    [](const auto& each) { return each.param.name; });

std::vector<int> apply(std::vector<int> rows, const std::vector<int>& target, const Edits& edits) {
  const auto at = [&](std::size_t row) { return rows.begin() + static_cast<std::ptrdiff_t>(row); };
  for (const auto& edit : edits) {
    if (const auto* gone = std::get_if<RemoveRows>(&edit)) {
      rows.erase(at(gone->first), at(gone->first + gone->count));
    } else if (const auto* moved = std::get_if<MoveRow>(&edit)) {
      const auto value = rows.at(moved->from);
      rows.erase(at(moved->from));
      rows.insert(at(moved->to), value);
    } else {
      const auto& added = std::get<InsertRows>(edit);
      for (auto i = added.first; i < added.first + added.count; ++i) rows.insert(at(i), target.at(i));
    }
  }
  return rows;
}

TEST(ListDiff, LeadsFromAnyListToAnyOther) {
  std::mt19937 random(20261);  // NOLINT(cert-msc51-cpp): the same lists on every run
  for (int round = 0; round < 2000; ++round) {
    std::vector<int> old(random() % 12);
    std::iota(old.begin(), old.end(), 0);
    std::vector<int> target(24);
    std::iota(target.begin(), target.end(), 0);
    std::ranges::shuffle(target, random);
    target.resize(random() % 16);
    Origins origins;
    for (const auto value : target) {
      const auto row = static_cast<std::size_t>(value);
      origins.push_back(row < old.size() ? std::optional(row) : std::nullopt);
    }
    EXPECT_EQ(apply(old, target, editsFor(old.size(), origins)), target) << "round " << round;
  }
}

}  // namespace
}  // namespace varnel::lists
