// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "core/base/splice.h"
#include "core/wire/transcript.h"

namespace varnel::transcript {

/// How far apart, in seconds, a sent message and the bridge's copy of it may lie.
inline constexpr double kEchoWindowSeconds = 120.0;

struct Reconciled {
  std::vector<wire::TranscriptItem> items;                ///< what to show
  std::vector<wire::TranscriptItem> remainingOptimistic;  ///< the sent messages the bridge has not echoed
};

/// Merges what the bridge says with the messages sent from here and not yet echoed. Each user entry of the bridge
/// absorbs at most one sent message of the same text within the window; the others follow at the end, in their order.
Reconciled reconcileTranscript(std::vector<wire::TranscriptItem> serverItems,
                               std::vector<wire::TranscriptItem> optimisticItems);

/// The same list of the bridge with other items between its first and its last ones.
struct ServerChange {
  std::size_t keptFront = 0;
  std::size_t keptBack = 0;
  std::vector<wire::TranscriptItem> items;
};

/// `reconcileTranscript` for a list of which only the change is known, in the time that takes. `shown` is what was
/// shown before, with the `optimistic` ones at its end; both become what they would be from the whole list. Says where
/// `shown` changed.
base::Splice reconcileInPlace(std::vector<wire::TranscriptItem>& shown, std::vector<wire::TranscriptItem>& optimistic,
                              ServerChange change);

}  // namespace varnel::transcript
