// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/wire/session_detail.h"

namespace varnel::wire {
namespace {

using Items = std::vector<TranscriptItem>;

/// Answers that follow each other, changed at random as a conversation and the rest of an answer may change.
class Conversation {
 public:
  explicit Conversation(unsigned seed) : m_random(seed) {}

  std::string next() {
    for (auto edits = below(4); edits > 0; --edits) edit();
    std::string text = m_before + "\"items\":[" + m_space;
    for (std::size_t i = 0; i < m_items.size(); ++i) text += (i == 0 ? "" : ",") + m_items[i];
    return text + m_space + "]" + m_after + "}";
  }

  /// The same, with one byte more, less or other than it should be.
  std::string broken() {
    std::string text = next();
    const auto at = below(text.size());
    const char byte = "{}[],:\"\\x\xff\n1"[below(12)];
    const auto kind = below(3);
    if (kind == 0) return text.insert(at, 1, byte);
    if (kind == 1) return text.erase(at, 1);
    text[at] = byte;
    return text;
  }

  std::size_t below(std::size_t end) { return m_random() % end; }

 private:
  std::string item() {
    const auto id = std::to_string(below(30));
    std::string text = R"({"id":")" + id + R"(","type":"t","timestamp":)" + std::to_string(below(9));
    if (below(2) == 0) text += R"(,"text":"é \n )" + std::string(below(40), 'x') + '"';
    if (below(2) == 0) text += R"(,"detail":{"a":[1,"b"]})";
    return text + "}";
  }

  void edit() {
    const auto place = [this] { return m_items.begin() + static_cast<std::ptrdiff_t>(below(m_items.size())); };
    const auto kind = below(12);
    if (kind < 4 || m_items.empty()) {
      m_items.push_back(item());
    } else if (kind < 6) {
      *place() = item();
    } else if (kind == 6) {
      m_items.erase(place());
    } else if (kind == 7) {
      m_items.insert(place(), item());
    } else if (kind == 8) {
      std::iter_swap(place(), place());
    } else if (kind == 9) {
      m_after = R"(,"pendingRequests":[],"session":{"id":")" + std::to_string(below(99)) + "\"}";
    } else if (kind == 10) {
      const std::vector<std::string> before = {"{", " { ", R"({"session":1,)", R"({"more":"é",)", R"({"items":[],)"};
      m_before = before[below(before.size())];
    } else {
      const std::vector<std::string> after = {"", R"(,"items":[{"id":"a","type":"b","timestamp":1}])",
                                              R"(,"queued":[])"};
      m_after = after[below(after.size())];
      m_space = below(2) == 0 ? " " : "";
    }
  }

  std::minstd_rand m_random;
  std::vector<std::string> m_items;
  std::string m_before = "{";
  std::string m_after;
  std::string m_space;
};

/// The former items with the change put into them.
Items changed(Items items, const SessionDetail& detail) {
  Items result(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(detail.keptFront));
  std::ranges::copy(**detail.items, std::back_inserter(result));
  std::copy(items.end() - static_cast<std::ptrdiff_t>(detail.keptBack), items.end(), std::back_inserter(result));
  return result;
}

TEST(SessionReload, GivesWhatDecodingFromNothingGives) {
  std::size_t kept = 0;
  for (unsigned seed = 1; seed <= 300; ++seed) {
    Conversation conversation(seed);
    std::shared_ptr<const SessionText> former;
    Items items;
    for (int step = 0; step < 40; ++step) {
      const std::string body = conversation.below(4) == 0 ? conversation.broken() : conversation.next();
      const auto whole = decodeSessionDetail(body);
      const auto change = decodeSessionDetail(body, former);
      ASSERT_EQ(change.has_value(), whole.has_value()) << body;
      if (!whole) {
        ASSERT_EQ(change.error(), whole.error()) << body;
        continue;
      }
      ASSERT_EQ(change->whole.text(), body);
      ASSERT_EQ(change->pendingRequests, whole->pendingRequests) << body;
      ASSERT_EQ(change->session, whole->session) << body;
      ASSERT_EQ(change->queued, whole->queued) << body;
      ASSERT_EQ(change->text == nullptr, whole->text == nullptr) << body;
      if (change->text == nullptr) {
        ASSERT_EQ(change->items, whole->items) << body;
        continue;
      }
      ASSERT_EQ(change->text->itemsBegin, whole->text->itemsBegin) << body;
      ASSERT_EQ(change->text->itemEnds, whole->text->itemEnds) << body;
      items = changed(std::move(items), *change);
      ASSERT_EQ(items, **whole->items) << body;
      kept += change->keptFront + change->keptBack;
      former = change->text;
    }
  }
  EXPECT_GT(kept, 10'000U);
}

TEST(SessionReload, DecodesOnlyTheItemsBetweenTheFirstAndTheLastThatChanged) {
  const auto item = [](int id, int time) {
    return R"({"id":")" + std::to_string(id) + R"(","type":"t","timestamp":)" + std::to_string(time) + "}";
  };
  const auto answer = [](const std::string& items) { return R"({"items":[)" + items + R"(],"session":null})"; };
  std::string front = item(0, 0);
  for (int i = 1; i < 50; ++i) front += "," + item(i, i);
  const auto former = decodeSessionDetail(answer(front + "," + item(50, 5) + "," + item(51, 6)))->text;

  struct Case {
    std::string tail;
    std::size_t keptFront, decoded, keptBack;
  };
  for (const Case& c :
       {Case{item(50, 5) + "," + item(51, 6), 52, 0, 0},
        Case{item(50, 5) + "," + item(51, 6) + "," + item(52, 7), 52, 1, 0},
        Case{item(50, 5) + "," + item(51, 7), 51, 1, 0}, Case{item(50, 9) + "," + item(51, 6), 50, 1, 1},
        Case{item(60, 1) + "," + item(50, 5) + "," + item(51, 6), 50, 1, 2}}) {
    const auto detail = decodeSessionDetail(answer(front + "," + c.tail), former);
    EXPECT_EQ(detail->keptFront, c.keptFront) << c.tail;
    EXPECT_EQ((*detail->items)->size(), c.decoded) << c.tail;
    EXPECT_EQ(detail->keptBack, c.keptBack) << c.tail;
  }
}

}  // namespace
}  // namespace varnel::wire
