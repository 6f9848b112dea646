// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/display_rows.h"

#include <algorithm>
#include <utility>

#include "core/transcript/row_fold.h"

namespace varnel::transcript {

namespace {

using wire::TranscriptItem;

std::optional<std::string> firstReply(auto begin, auto end, auto wanted) {
  const auto reply =
      std::find_if(begin, end, [&](const TranscriptItem& item) { return item.role == "assistant" && wanted(item); });
  return reply == end ? std::nullopt : std::optional(reply->id);
}

}  // namespace

std::string TranscriptDisplayRow::id() const {
  if (kind == Kind::Message) return items.front().id;
  return "tools-" + (items.empty() ? std::string("empty") : items.front().id);
}

std::vector<TranscriptDisplayRow> transcriptDisplayRows(std::vector<TranscriptItem> items) {
  using enum TranscriptDisplayRow::Kind;
  RowFold fold;
  fold.update(items, {.first = 0, .removed = 0, .inserted = items.size()});
  std::vector<TranscriptDisplayRow> rows;
  rows.reserve(fold.rows().size());
  for (const RowFold::Row& folded : fold.rows()) {
    TranscriptDisplayRow& row = rows.emplace_back(folded.isRun ? Tools : Message);
    for (std::size_t i = folded.first; i <= folded.last; ++i) {
      if (!isDropped(items[i])) row.items.push_back(std::move(items[i]));
    }
  }
  return rows;
}

std::optional<std::string> firstUnreadReplyID(const std::vector<TranscriptItem>& in,
                                              const std::optional<std::string>& after) {
  if (!after) return std::nullopt;
  const auto read = std::ranges::find(in, *after, &TranscriptItem::id);
  if (read == in.end()) return std::nullopt;
  return firstReply(read + 1, in.end(), [](const TranscriptItem&) { return true; });
}

std::optional<std::string> firstUnreadReplyID(const std::vector<TranscriptItem>& in,
                                              const std::set<std::string, std::less<>>& knownItemIDs) {
  return firstReply(in.begin(), in.end(), [&](const TranscriptItem& item) { return !knownItemIDs.contains(item.id); });
}

}  // namespace varnel::transcript
