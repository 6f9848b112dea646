// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/search_index.h"

#include <gmock/gmock.h>

#include "host/store/database.h"
#include "host/store/fold.h"

namespace varnel::store {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SearchIndexTest : public ::testing::Test {
 protected:
  void add(const std::string& id, double updatedAt, const std::vector<std::pair<std::string, std::string>>& items) {
    const SearchIndex::Conversation conversation{
        .id = id, .name = "Title of " + id, .cwd = "/w", .updatedAt = updatedAt, .archived = id.starts_with("old")};
    std::vector<SearchIndex::Item> rows;
    std::unordered_set<std::string> ids;
    for (const auto& [itemId, text] : items) {
      rows.push_back({.id = itemId, .turnId = "t", .position = static_cast<std::int64_t>(rows.size()), .text = text});
      ids.insert(itemId);
    }
    index.begin(conversation);
    index.put(id, rows);
    index.finish(conversation, ids);
  }
  std::vector<std::string> found(const std::string& text) {
    std::vector<std::string> hits;
    for (const auto& result : index.search(text, {}, 20).results) {
      hits.push_back(result.thread.id);
      for (const auto& occurrence : result.occurrences.value_or(std::vector<wire::SearchOccurrence>())) {
        hits.back() += " " + occurrence.itemId;
      }
    }
    return hits;
  }

  Database database = Database::open(":memory:").value();
  SearchIndex index{database};
};

TEST_F(SearchIndexTest, findsAnyPieceInAnyCaseAndNothingElse) {
  add("a", 3, {{"a1", "The WriteAhead log, write-ahead twice"}, {"a2", "naïve Été"}});
  add("b", 2, {{"b1", R"(say "hello" OR 100% sure)"}, {"b2", "日本語のテキスト"}});
  add("old", 1, {{"o1", "an archived WRITEAHEAD"}});
  const std::vector<std::pair<std::string, std::vector<std::string>>> cases{
      {"writeahead", {"a a1", "old o1"}},  // archived ones too, each item once
      {"iteahe", {"a a1", "old o1"}},
      {"ÉTÉ", {"a a2"}},
      {"été", {"a a2"}},
      {"日本", {"b b2"}},  // shorter than what the index knows
      {"本語の", {"b b2"}},
      {"É", {"a a2"}},
      {R"("hello" OR)", {"b b1"}},  // nothing in it is an operator
      {"100%", {"b b1"}},
      {"0%", {"b b1"}},
      {"title of b", {"b"}},
      {"hello*", {}},
      {"nowhere", {}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(found(text), expected) << text;
}

TEST_F(SearchIndexTest, followsWhatChanges) {
  add("a", 1, {{"a1", "first text"}, {"a2", "second text"}});
  add("a", 2, {{"a1", "other words"}, {"a3", "third text"}});
  EXPECT_THAT(found("first"), IsEmpty());
  EXPECT_THAT(found("second"), IsEmpty()) << "an item that is gone is still found";
  EXPECT_THAT(found("other"), ElementsAre("a a1"));
  EXPECT_THAT(found("third"), ElementsAre("a a3"));
  EXPECT_TRUE(index.isCurrent({.id = "a", .name = "Title of a", .cwd = "/w", .updatedAt = 2, .archived = false}));
  EXPECT_FALSE(index.isCurrent({.id = "a", .name = "Title of a", .cwd = "/w", .updatedAt = 2, .archived = true}));
  index.keepOnly({});
  EXPECT_THAT(found("other"), IsEmpty());
  EXPECT_THAT(found("title"), IsEmpty());
}

TEST_F(SearchIndexTest, isReadAgainWhenItWasInterrupted) {
  const SearchIndex::Conversation half{.id = "h", .name = "n", .cwd = {}, .updatedAt = 5, .archived = false};
  index.begin(half);
  EXPECT_FALSE(index.isCurrent(half));
}

TEST_F(SearchIndexTest, pagesThroughAllWithoutGapOrDouble) {
  for (int i = 0; i < 45; ++i) add("c" + std::to_string(i), i / 10, {{"x", "needle"}});  // many of the same age
  std::set<std::string> seen;
  std::optional<SearchIndex::Position> next;
  int pages = 0;
  do {
    const auto page = index.search("needle", next, 20);
    for (const auto& result : page.results) EXPECT_TRUE(seen.insert(result.thread.id).second) << result.thread.id;
    next = page.next;
    ++pages;
  } while (next && pages < 10);
  EXPECT_EQ(seen.size(), 45U);
  EXPECT_EQ(pages, 3);
}

TEST(Fold, showsTheTextAroundAMatch) {
  const std::string text = "one  two\nthree élan four";
  const auto match = findFolded(text, "ÉLAN");
  ASSERT_TRUE(match);
  EXPECT_EQ(text.substr(match->begin, match->end - match->begin), "élan");
  EXPECT_EQ(excerpt(text, *match, 6), "…three élan four");
  EXPECT_EQ(excerpt(text, *match, 2), "…e élan f…");
  EXPECT_EQ(excerpt("abc", {}, 60), "abc");
  EXPECT_FALSE(findFolded(text, ""));
  EXPECT_EQ(firstCharacters("日本語", 2), "日本");
}

}  // namespace
}  // namespace varnel::store
