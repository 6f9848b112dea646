// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/reconcile.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace varnel::transcript {
namespace {

using wire::TranscriptItem;

bool isEcho(const TranscriptItem& server, const TranscriptItem& optimistic) {
  return server.role == "user" && server.text == optimistic.text &&
         std::abs(server.timestamp - optimistic.timestamp) <= kEchoWindowSeconds;
}

}  // namespace

Reconciled reconcileTranscript(std::vector<TranscriptItem> serverItems, std::vector<TranscriptItem> optimisticItems) {
  Reconciled result{.items = std::move(serverItems), .remainingOptimistic = {}};
  std::vector<bool> matched(result.items.size(), false);
  for (auto& optimistic : optimisticItems) {
    std::size_t position = 0;
    while (position < matched.size() && (matched[position] || !isEcho(result.items[position], optimistic))) ++position;
    if (position < matched.size()) {
      matched[position] = true;
    } else {
      result.remainingOptimistic.push_back(std::move(optimistic));
    }
  }
  std::ranges::copy(result.remainingOptimistic, std::back_inserter(result.items));
  return result;
}

}  // namespace varnel::transcript
