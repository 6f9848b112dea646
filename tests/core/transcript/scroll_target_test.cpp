// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/scroll_target.h"

#include <gtest/gtest.h>

#include <optional>

namespace varnel::transcript {
namespace {

using wire::TranscriptItem;

/// "id" alone is a tool item, "id:role" has a role.
std::vector<TranscriptItem> items(std::initializer_list<std::string_view> texts) {
  std::vector<TranscriptItem> result;
  for (const auto text : texts) {
    TranscriptItem item{.type = "message"};
    const auto colon = text.find(':');
    item.id = text.substr(0, colon);
    if (colon != std::string_view::npos) item.role = text.substr(colon + 1);
    result.push_back(item);
  }
  return result;
}

std::string said(const std::optional<ScrollTarget>& target) {
  if (!target) return "nowhere";
  constexpr auto kNames = std::to_array<std::string_view>({"top", "center", "bottom"});
  return target->rowId + " " + std::string(kNames[static_cast<std::size_t>(target->alignment)]);
}

TEST(Opening, GoesToTheItemAskedForElseToTheFirstUnreadReplyElseToTheEnd) {
  const auto all = items({"U1:user", "A1:assistant", "U2:user", "A2:assistant", "T1", "T2"});
  struct Case {
    std::optional<std::string> selected;
    std::optional<std::string> lastRead;
    std::string target;
    bool found;
  };
  for (const Case& each : std::vector<Case>{
           {.selected = "A1", .lastRead = "U1", .target = "A1 center", .found = true},
           {.selected = "T2", .lastRead = "U1", .target = "T2 center", .found = true},
           {.selected = "gone", .lastRead = "U1", .target = "A1 top", .found = false},
           {.selected = std::nullopt, .lastRead = "A1", .target = "A2 top", .found = false},
           {.selected = std::nullopt, .lastRead = "A2", .target = "tools-T1 bottom", .found = false},
           {.selected = std::nullopt, .lastRead = std::nullopt, .target = "tools-T1 bottom", .found = false},
       }) {
    const auto opening = openingOf(all, each.selected, each.lastRead);
    EXPECT_EQ(said(opening.target), each.target) << each.selected.value_or("-") << each.lastRead.value_or("-");
    EXPECT_EQ(opening.selectedFound, each.found) << each.target;
  }
  EXPECT_EQ(said(openingOf({}, std::nullopt, std::nullopt).target), "nowhere");
}

TEST(Change, GoesToANewReplyElseToANewMessageOnItsWay) {
  const auto known = idsOf(items({"U1:user", "A1:assistant"}));
  EXPECT_EQ(said(targetOfChange(items({"U1:user", "A1:assistant", "T1", "U2:user"}), known)), "nowhere");
  EXPECT_EQ(said(targetOfChange(items({"U1:user", "A1:assistant", "optimistic-1:user"}), known)),
            "optimistic-1 bottom");
  EXPECT_EQ(said(targetOfChange(items({"A1:assistant", "optimistic-1:user", "A2:assistant", "A3:assistant"}), known)),
            "A2 top");
  EXPECT_EQ(said(targetOfChange(items({"optimistic-1:user"}), idsOf(items({"optimistic-1:user"})))), "nowhere");
}

}  // namespace
}  // namespace varnel::transcript
