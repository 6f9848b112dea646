// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/reconcile.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <ranges>
#include <span>
#include <utility>

namespace varnel::transcript {
namespace {

using wire::TranscriptItem;

bool isEcho(const TranscriptItem& server, const TranscriptItem& optimistic) {
  return server.role == "user" && server.text == optimistic.text &&
         std::abs(server.timestamp - optimistic.timestamp) <= kEchoWindowSeconds;
}

/// The sent messages that no entry of the bridge absorbs.
std::vector<TranscriptItem> notEchoed(std::span<const TranscriptItem> server, std::vector<TranscriptItem> optimistic) {
  if (optimistic.empty()) return optimistic;
  std::vector<bool> matched(server.size(), false);
  std::erase_if(optimistic, [&](const TranscriptItem& sent) {
    std::size_t position = 0;
    while (position < matched.size() && (matched[position] || !isEcho(server[position], sent))) ++position;
    if (position == matched.size()) return false;
    matched[position] = true;
    return true;
  });
  return optimistic;
}

/// Puts the new elements over the old ones and moves the rest only when their numbers differ.
void replace(std::vector<TranscriptItem>& list, std::size_t first, std::size_t removed,
             std::vector<TranscriptItem> items) {
  const auto common = static_cast<std::ptrdiff_t>(std::min(removed, items.size()));
  const auto at = list.begin() + static_cast<std::ptrdiff_t>(first);
  const auto end = std::move(items.begin(), items.begin() + common, at);
  if (items.size() > removed) {
    list.insert(end, std::move_iterator(items.begin() + common), std::move_iterator(items.end()));
  } else {
    list.erase(end, at + static_cast<std::ptrdiff_t>(removed));
  }
}

/// Keeps the items at both ends of the change that are what they were.
void leaveOutEqual(std::span<const TranscriptItem> server, ServerChange& change) {
  const auto former = server.subspan(change.keptFront, server.size() - change.keptFront - change.keptBack);
  auto& items = change.items;
  const auto front = std::ranges::mismatch(items, former).in1 - items.begin();
  items.erase(items.begin(), items.begin() + front);
  const auto rest = former.subspan(static_cast<std::size_t>(front));
  const auto back = std::ranges::mismatch(std::views::reverse(items), std::views::reverse(rest)).in1 -
                    std::views::reverse(items).begin();
  items.erase(items.end() - back, items.end());
  change.keptFront += static_cast<std::size_t>(front);
  change.keptBack += static_cast<std::size_t>(back);
}

}  // namespace

Reconciled reconcileTranscript(std::vector<TranscriptItem> serverItems, std::vector<TranscriptItem> optimisticItems) {
  Reconciled result{.items = std::move(serverItems), .remainingOptimistic = {}};
  result.remainingOptimistic = notEchoed(result.items, std::move(optimisticItems));
  std::ranges::copy(result.remainingOptimistic, std::back_inserter(result.items));
  return result;
}

base::Splice reconcileInPlace(std::vector<TranscriptItem>& shown, std::vector<TranscriptItem>& optimistic,
                              ServerChange change) {
  const std::size_t before = shown.size();
  const std::size_t sent = optimistic.size();
  leaveOutEqual(std::span(shown).first(before - sent), change);
  base::Splice splice{.first = change.keptFront,
                      .removed = before - sent - change.keptFront - change.keptBack,
                      .inserted = change.items.size()};
  replace(shown, splice.first, splice.removed, std::move(change.items));
  if (sent == 0) return splice;
  const std::size_t server = shown.size() - sent;
  optimistic = notEchoed(std::span(shown).first(server), std::move(optimistic));
  if (optimistic.size() == sent) return splice;
  replace(shown, server, sent, optimistic);
  if (splice.removed == 0 && splice.inserted == 0) splice.first = server;
  return {.first = splice.first, .removed = before - splice.first, .inserted = shown.size() - splice.first};
}

}  // namespace varnel::transcript
