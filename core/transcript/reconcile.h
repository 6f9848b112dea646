// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

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

}  // namespace varnel::transcript
