// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/session_update.h"

#include <algorithm>
#include <utility>

namespace varnel::live {

SessionUpdate updateFrom(wire::SessionDetail detail, std::vector<wire::TranscriptItem> optimisticItems) {
  SessionUpdate update;
  if (!detail.items || !detail.pendingRequests) {
    update.contact = true;
    return update;
  }
  auto& items = *detail.items;
  if (!items) return update;
  update.transcript = transcript::reconcileTranscript(std::move(*items), std::move(optimisticItems));
  auto& pendingRequests = *detail.pendingRequests;
  if (!pendingRequests) return update;
  update.pendingRequests = std::move(*pendingRequests);
  if (detail.session && *detail.session) update.session = std::move(**detail.session);
  if (detail.queued && *detail.queued) update.queued = std::move(**detail.queued);
  update.contact = true;
  return update;
}

bool place(std::vector<wire::SessionSummary>& sessions, wire::SessionSummary summary) {
  const auto former = std::ranges::find(sessions, summary.id, &wire::SessionSummary::id);
  if (former == sessions.end()) {
    sessions.push_back(std::move(summary));
    return true;
  }
  const bool differs = *former != summary;
  *former = std::move(summary);
  return differs;
}

}  // namespace varnel::live
