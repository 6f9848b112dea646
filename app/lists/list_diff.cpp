// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/lists/list_diff.h"

#include <algorithm>

namespace varnel::lists {
namespace {

using Rows = std::vector<std::size_t>;

/// Which positions of a list of distinct numbers belong to one of its longest ascending subsequences.
std::vector<bool> longestAscending(const Rows& rows) {
  constexpr auto kNone = static_cast<std::size_t>(-1);
  Rows tails;  // tails[n]: position of the smallest number that ends an ascending run of n + 1
  Rows previous(rows.size(), kNone);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto tail =
        std::ranges::lower_bound(tails, rows[i], {}, [&](std::size_t position) { return rows[position]; });
    if (tail != tails.begin()) previous[i] = *std::prev(tail);
    if (tail == tails.end()) {
      tails.push_back(i);
    } else {
      *tail = i;
    }
  }
  std::vector<bool> stays(rows.size(), false);
  for (auto i = tails.empty() ? kNone : tails.back(); i != kNone; i = previous[i]) stays[i] = true;
  return stays;
}

void removeGone(std::vector<ListEdit>& edits, const std::vector<bool>& kept) {
  for (std::size_t end = kept.size(); end > 0;) {
    if (kept[end - 1]) {
      --end;
      continue;
    }
    std::size_t first = end - 1;
    while (first > 0 && !kept[first - 1]) --first;
    edits.emplace_back(RemoveRows{.first = first, .count = end - first});
    end = first;
  }
}

/// Every row that does not stay is put right behind the one that precedes it in the end.
void moveKept(std::vector<ListEdit>& edits, const Rows& target) {
  const auto stays = longestAscending(target);
  if (std::ranges::find(stays, false) == stays.end()) return;
  Rows current = target;
  std::ranges::sort(current);
  for (std::size_t i = 0; i < target.size(); ++i) {
    if (stays[i]) continue;
    const auto from = std::ranges::find(current, target[i]) - current.begin();
    const auto after = i == 0 ? 0 : std::ranges::find(current, target[i - 1]) - current.begin() + 1;
    const auto to = after > from ? after - 1 : after;
    if (from == to) continue;
    edits.emplace_back(MoveRow{.from = static_cast<std::size_t>(from), .to = static_cast<std::size_t>(to)});
    current.erase(current.begin() + from);
    current.insert(current.begin() + to, target[i]);
  }
}

void insertNew(std::vector<ListEdit>& edits, const std::vector<std::optional<std::size_t>>& origins) {
  for (std::size_t first = 0; first < origins.size();) {
    if (origins[first]) {
      ++first;
      continue;
    }
    std::size_t end = first + 1;
    while (end < origins.size() && !origins[end]) ++end;
    edits.emplace_back(InsertRows{.first = first, .count = end - first});
    first = end;
  }
}

}  // namespace

std::vector<ListEdit> editsFor(std::size_t oldSize, const std::vector<std::optional<std::size_t>>& origins) {
  std::vector<bool> kept(oldSize, false);
  Rows target;
  for (const auto& origin : origins) {
    if (!origin) continue;
    kept[*origin] = true;
    target.push_back(*origin);
  }
  std::vector<ListEdit> edits;
  removeGone(edits, kept);
  moveKept(edits, target);
  insertNew(edits, origins);
  return edits;
}

}  // namespace varnel::lists
