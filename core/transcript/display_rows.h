// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/wire/transcript.h"

namespace varnel::transcript {

/// A row of the conversation screen: a message, or a run of everything that stands between two messages.
struct TranscriptDisplayRow {
  enum class Kind { Message, Tools };
  Kind kind = Kind::Message;
  std::vector<wire::TranscriptItem> items;  ///< exactly one for a message

  /// The list identity and the scroll target: a message's item id, "tools-" and the first item's id for a run.
  [[nodiscard]] std::string id() const;
  bool operator==(const TranscriptDisplayRow&) const = default;
};

/// Folds a transcript into rows, in its order. Reasoning and plan items are dropped and part no run.
std::vector<TranscriptDisplayRow> transcriptDisplayRows(std::vector<wire::TranscriptItem> items);

/// The first assistant reply strictly after an item; nothing when that item is not there.
std::optional<std::string> firstUnreadReplyID(const std::vector<wire::TranscriptItem>& in,
                                              const std::optional<std::string>& after);

/// The first assistant reply that is not among the known ones.
std::optional<std::string> firstUnreadReplyID(const std::vector<wire::TranscriptItem>& in,
                                              const std::set<std::string, std::less<>>& knownItemIDs);

}  // namespace varnel::transcript
