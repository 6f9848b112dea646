// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "core/json/raw_value.h"
#include "core/wire/queue.h"
#include "core/wire/request.h"
#include "core/wire/session.h"
#include "core/wire/transcript.h"

namespace varnel::wire {

/// The answer about one conversation: the members that are read, each decoded on its own so that one which does
/// not fit leaves the others usable, and the whole answer for whoever asks for more.
struct SessionDetail {
  template <class T>
  using Member = std::optional<std::expected<T, json::DecodeError>>;  ///< nothing when the answer has no such member

  json::RawValue whole;
  Member<std::vector<TranscriptItem>> items;
  Member<std::vector<PendingRequest>> pendingRequests;
  Member<SessionSummary> session;
  Member<std::vector<QueuedMessage>> queued;  ///< nothing when the bridge has no queue
};

/// Fails only when the text is not JSON; an answer that is not an object has no members. One pass over the text, which
/// is kept as `whole`.
std::expected<SessionDetail, json::DecodeError> decodeSessionDetail(std::string text);

}  // namespace varnel::wire
