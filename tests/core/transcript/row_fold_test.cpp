// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/row_fold.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/transcript/reconcile.h"

namespace varnel::transcript {
namespace {

using wire::TranscriptItem;
using Items = std::vector<TranscriptItem>;

class Source {
 public:
  explicit Source(unsigned seed) : m_random(seed) {}

  std::size_t below(std::size_t end) { return m_random() % end; }
  TranscriptItem item() {
    TranscriptItem result;
    result.id = std::to_string(++m_last);
    const auto kind = below(6);
    result.type = kind == 0 ? "reasoning" : "other";
    if (kind > 3) result.role = kind == 4 ? "user" : "assistant";
    result.text = std::to_string(below(4));
    return result;
  }
  /// A change of a list of that size, and the items it puts in.
  ServerChange change(std::size_t size) {
    ServerChange result;
    result.keptFront = below(size + 1);
    result.keptBack = below(size - result.keptFront + 1);
    for (auto count = below(4); count > 0; --count) result.items.push_back(item());
    return result;
  }

 private:
  std::minstd_rand m_random;
  int m_last = 0;
};

Items applied(const Items& list, const ServerChange& change) {
  Items result(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(change.keptFront));
  std::ranges::copy(change.items, std::back_inserter(result));
  std::copy(list.end() - static_cast<std::ptrdiff_t>(change.keptBack), list.end(), std::back_inserter(result));
  return result;
}

/// What a row shows, wherever its items stand.
using Shown = std::vector<Items>;
Shown shown(const RowFold& fold, const Items& items) {
  Shown result;
  for (const auto& row : fold.rows()) {
    Items& each = result.emplace_back();
    std::copy_if(items.begin() + static_cast<std::ptrdiff_t>(row.first),
                 items.begin() + static_cast<std::ptrdiff_t>(row.last) + 1, std::back_inserter(each),
                 [](const TranscriptItem& item) { return !isDropped(item); });
  }
  return result;
}

TEST(RowFold, FollowsAnyChangeAndNamesTheRowsThatBecameOthers) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    Source source(seed);
    RowFold fold;
    Items items;
    for (int step = 0; step < 30; ++step) {
      const ServerChange change = source.change(items.size());
      const Shown before = shown(fold, items);
      const std::size_t removed = items.size() - change.keptFront - change.keptBack;
      items = applied(items, change);
      const auto splice =
          fold.update(items, {.first = change.keptFront, .removed = removed, .inserted = change.items.size()});

      RowFold fromNothing;
      fromNothing.update(items, {.first = 0, .removed = 0, .inserted = items.size()});
      ASSERT_EQ(fold.rows(), fromNothing.rows()) << seed << " " << step;
      const Shown after = shown(fold, items);
      ASSERT_EQ(after.size(), before.size() - splice.removed + splice.inserted);
      const auto first = static_cast<std::ptrdiff_t>(splice.first);
      ASSERT_TRUE(std::equal(before.begin(), before.begin() + first, after.begin(), after.begin() + first));
      ASSERT_TRUE(std::equal(before.begin() + first + static_cast<std::ptrdiff_t>(splice.removed), before.end(),
                             after.begin() + first + static_cast<std::ptrdiff_t>(splice.inserted), after.end()));
    }
  }
}

TEST(RowFold, TouchesTheRowsOfTheChangeAlone) {
  Source source(1);
  const auto make = [&source](std::string type, std::optional<std::string> role) {
    TranscriptItem item = source.item();
    item.type = std::move(type);
    item.role = std::move(role);
    return item;
  };
  Items items = {make("m", "user"), make("tool", {}), make("tool", {}), make("m", "assistant"), make("tool", {})};
  RowFold fold;
  EXPECT_EQ(fold.update(items, {.first = 0, .removed = 0, .inserted = 5}), (base::Splice{0, 0, 4}));
  items.push_back(make("m", "user"));
  EXPECT_EQ(fold.update(items, {.first = 5, .removed = 0, .inserted = 1}), (base::Splice{4, 0, 1}));
  items.push_back(make("tool", {}));
  items.push_back(make("reasoning", {}));
  EXPECT_EQ(fold.update(items, {.first = 6, .removed = 0, .inserted = 2}), (base::Splice{5, 0, 1}));
  items.push_back(make("reasoning", {}));
  EXPECT_EQ(fold.update(items, {.first = 8, .removed = 0, .inserted = 1}), (base::Splice{6, 0, 0}));
  items[2] = make("tool", {});
  EXPECT_EQ(fold.update(items, {.first = 2, .removed = 1, .inserted = 1}), (base::Splice{1, 1, 1}));
}

TEST(ReconcileInPlace, GivesWhatTheWholeListGives) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    Source source(seed);
    Items server;
    Items visible;
    Items optimistic;
    for (int step = 0; step < 30; ++step) {
      if (source.below(2) == 0) {
        TranscriptItem sent = source.item();
        sent.role = "user";
        visible.push_back(sent);
        optimistic.push_back(sent);
      }
      const ServerChange change = source.change(server.size());
      server = applied(server, change);
      const Reconciled expected = reconcileTranscript(server, optimistic);
      const Items before = visible;
      const auto splice = reconcileInPlace(visible, optimistic, change);
      ASSERT_EQ(visible, expected.items);
      ASSERT_EQ(optimistic, expected.remainingOptimistic);
      ASSERT_EQ(before.size() - splice.removed + splice.inserted, visible.size());
      const auto first = static_cast<std::ptrdiff_t>(splice.first);
      ASSERT_TRUE(std::equal(before.begin(), before.begin() + first, visible.begin(), visible.begin() + first));
      ASSERT_TRUE(std::equal(before.begin() + first + static_cast<std::ptrdiff_t>(splice.removed), before.end(),
                             visible.begin() + first + static_cast<std::ptrdiff_t>(splice.inserted), visible.end()));
    }
  }
}

}  // namespace
}  // namespace varnel::transcript
