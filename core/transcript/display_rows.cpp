// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/display_rows.h"

#include <algorithm>
#include <utility>

namespace varnel::transcript {

namespace {

using wire::TranscriptItem;

bool isMessage(const TranscriptItem& item) {
  return item.role == "user" || item.role == "assistant";
}

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
  std::vector<TranscriptDisplayRow> rows;
  bool inRun = false;
  for (TranscriptItem& item : items) {
    if (item.type == "reasoning" || item.type == "plan") continue;
    const bool message = isMessage(item);
    if (message || !inRun) rows.push_back({.kind = message ? Message : Tools, .items = {}});
    rows.back().items.push_back(std::move(item));
    inRun = !message;
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
