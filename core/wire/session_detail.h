// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/json/raw_value.h"
#include "core/wire/queue.h"
#include "core/wire/request.h"
#include "core/wire/session.h"
#include "core/wire/transcript.h"

namespace varnel::wire {

/// The text of an answer about one conversation and where its items stand in it: what the next answer is compared with.
/// Never changes, so any thread may read it.
struct SessionText {
  std::shared_ptr<const std::string> text;
  std::size_t itemsBegin = 0;         ///< behind the opening bracket of their list
  std::vector<std::size_t> itemEnds;  ///< behind each item, counted from `itemsBegin`
};

/// The answer about one conversation: the members that are read, each decoded on its own so that one which does
/// not fit leaves the others usable, and the whole answer for whoever asks for more.
struct SessionDetail {
  template <class T>
  using Member = std::optional<std::expected<T, json::DecodeError>>;  ///< nothing when the answer has no such member

  json::RawValue whole;
  /// All of them; beside a former answer those between the `keptFront` first and the `keptBack` last of its items,
  /// which stand in this answer as they stood.
  Member<std::vector<TranscriptItem>> items;
  std::size_t keptFront = 0;
  std::size_t keptBack = 0;
  Member<std::vector<PendingRequest>> pendingRequests;
  Member<SessionSummary> session;
  Member<std::vector<QueuedMessage>> queued;  ///< nothing when the bridge has no queue
  std::shared_ptr<const SessionText> text;    ///< for the next answer; null when there are no good items
};

/// Fails only when the text is not JSON; an answer that is not an object has no members. One pass over the text, which
/// is kept as `whole`.
///
/// Given the former answer about the conversation, only what differs is decoded: equal bytes are compared and passed
/// over. What comes out is right for any two answers, and quick where few items next to each other changed. Whoever
/// keeps the items keeps `text` with them and hands it over with the next answer; then
/// `transcript::reconcileInPlace` puts the change into the items, `transcript::RowFold` into the rows made of them, and
/// a list of those rows is spliced. Details of items that are decoded beside a former answer are copies, so that at
/// most two answers stay in memory: the first, whose details are shared, and the last.
std::expected<SessionDetail, json::DecodeError> decodeSessionDetail(
    std::string text, const std::shared_ptr<const SessionText>& former = nullptr);

}  // namespace varnel::wire
