// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/scroll_target.h"

#include <algorithm>
#include <ranges>

#include "core/transcript/display_rows.h"

namespace varnel::transcript {
namespace {

constexpr std::string_view kOptimisticPrefix = "optimistic-";

/// The last item that has a row decides which row that is; what is dropped has none.
std::optional<std::string> lastRowId(const std::vector<wire::TranscriptItem>& items) {
  const auto rows = transcriptDisplayRows(items);
  return rows.empty() ? std::nullopt : std::optional(rows.back().id());
}

}  // namespace

Opening openingOf(const std::vector<wire::TranscriptItem>& items, const std::optional<std::string>& selectedItemId,
                  const std::optional<std::string>& lastReadItemId) {
  using enum ScrollTarget::Alignment;
  const auto isSelected = [&](const wire::TranscriptItem& item) { return item.id == selectedItemId; };
  if (selectedItemId && std::ranges::any_of(items, isSelected)) {
    return {.target = ScrollTarget{.rowId = *selectedItemId, .alignment = Center}, .selectedFound = true};
  }
  if (auto unread = firstUnreadReplyID(items, lastReadItemId)) {
    return {.target = ScrollTarget{.rowId = *std::move(unread), .alignment = Top}};
  }
  if (auto last = lastRowId(items)) {
    return {.target = ScrollTarget{.rowId = *std::move(last), .alignment = Bottom}};
  }
  return {};
}

std::optional<ScrollTarget> targetOfChange(const std::vector<wire::TranscriptItem>& items, const ItemIDs& known) {
  using enum ScrollTarget::Alignment;
  if (auto reply = firstUnreadReplyID(items, known)) {
    return ScrollTarget{.rowId = *std::move(reply), .alignment = Top};
  }
  const auto own = std::ranges::find_if(items, [&](const wire::TranscriptItem& item) {
    return item.id.starts_with(kOptimisticPrefix) && !known.contains(item.id);
  });
  if (own == items.end()) return std::nullopt;
  return ScrollTarget{.rowId = own->id, .alignment = Bottom};
}

ItemIDs idsOf(const std::vector<wire::TranscriptItem>& items) {
  const auto ids = items | std::views::transform(&wire::TranscriptItem::id);
  return {ids.begin(), ids.end()};
}

}  // namespace varnel::transcript
