// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "core/transcript/reconcile.h"
#include "core/wire/request.h"
#include "core/wire/session.h"
#include "core/wire/session_detail.h"

/// What the answer about one conversation changes.
namespace varnel::live {

/// An absent member leaves the model's own as it is.
struct SessionUpdate {
  std::optional<transcript::Reconciled> transcript;
  std::optional<std::vector<wire::PendingRequest>> pendingRequests;
  std::optional<wire::SessionSummary> session;
  std::optional<std::vector<wire::QueuedMessage>> queued;
  bool contact = false;  ///< the answer counts as a sign of life
};

/// Items that do not decode void the whole answer, requests that do not decode leave the transcript of before them;
/// either way it is no sign of life. An answer without items or requests is one, and nothing else.
SessionUpdate updateFrom(wire::SessionDetail detail, std::vector<wire::TranscriptItem> optimisticItems);

/// Puts the summary in place of the first one of the same id, else at the end. Whether that changed anything.
bool place(std::vector<wire::SessionSummary>& sessions, wire::SessionSummary summary);

}  // namespace varnel::live
