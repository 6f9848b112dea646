// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/display_rows.h"

#include <gtest/gtest.h>

namespace varnel::transcript {
namespace {

using wire::TranscriptItem;

/// "id" alone is a tool item, "id:role" has a role, "id=type" a type.
TranscriptItem item(std::string_view text) {
  TranscriptItem result{.type = "message"};
  if (const auto at = text.find('='); at != std::string_view::npos) {
    result.type = text.substr(at + 1);
    text = text.substr(0, at);
  }
  if (const auto at = text.find(':'); at != std::string_view::npos) {
    result.role = text.substr(at + 1);
    text = text.substr(0, at);
  }
  result.id = text;
  return result;
}

std::vector<TranscriptItem> items(std::initializer_list<std::string_view> texts) {
  std::vector<TranscriptItem> result;
  for (const auto text : texts) result.push_back(item(text));
  return result;
}

/// Each row as its id and the ids it holds.
std::string rows(std::initializer_list<std::string_view> texts) {
  std::string result;
  for (const auto& row : transcriptDisplayRows(items(texts))) {
    result += row.id() + "(";
    for (const auto& held : row.items) result += held.id + " ";
    result.back() = ')';
  }
  return result;
}

TEST(TranscriptDisplayRows, FoldEverythingBetweenMessagesIntoRuns) {
  EXPECT_EQ(rows({}), "");
  EXPECT_EQ(rows({"U1:user", "T1", "R1=reasoning", "T2", "A1:assistant"}), "U1(U1)tools-T1(T1 T2)A1(A1)");
  EXPECT_EQ(rows({"T1", "T2:system", "A1:assistant", "A2:assistant", "T3:User"}),
            "tools-T1(T1 T2)A1(A1)A2(A2)tools-T3(T3)");
  EXPECT_EQ(rows({"P1:assistant=plan", "R1=reasoning"}), "");
  EXPECT_EQ((TranscriptDisplayRow{.kind = TranscriptDisplayRow::Kind::Tools, .items = {}}.id()), "tools-empty");
}

TEST(FirstUnreadReply, LooksAfterTheReadPosition) {
  const auto transcript = items({"A0:assistant", "U1:user", "T1", "A1:assistant", "A2:assistant"});
  const auto after = [&](std::optional<std::string> id) { return firstUnreadReplyID(transcript, id).value_or("none"); };
  EXPECT_EQ(after(std::nullopt), "none");
  EXPECT_EQ(after("gone"), "none");
  EXPECT_EQ(after("A0"), "A1");
  EXPECT_EQ(after("A1"), "A2");
  EXPECT_EQ(after("A2"), "none");
}

TEST(FirstUnreadReply, LooksForTheFirstUnknownOne) {
  using Known = std::set<std::string, std::less<>>;
  const auto transcript = items({"U1:user", "A1:assistant", "T1", "A2:assistant"});
  EXPECT_EQ(firstUnreadReplyID(transcript, Known{}), "A1");
  EXPECT_EQ(firstUnreadReplyID(transcript, Known{"A1"}), "A2");
  EXPECT_EQ(firstUnreadReplyID(transcript, Known{"A1", "A2"}), std::nullopt);
}

}  // namespace
}  // namespace varnel::transcript
