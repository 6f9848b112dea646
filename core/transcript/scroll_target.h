// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/wire/transcript.h"

/// Where a conversation is scrolled to when it is opened and when it grows.
namespace varnel::transcript {

using ItemIDs = std::set<std::string, std::less<>>;

struct ScrollTarget {
  enum class Alignment { Top, Center, Bottom };
  std::string rowId;  ///< not every item has a row: such a target is nowhere
  Alignment alignment = Alignment::Bottom;

  bool operator==(const ScrollTarget&) const = default;
};

struct Opening {
  std::optional<ScrollTarget> target;
  bool selectedFound = false;  ///< the item that was asked for is there, and need not be asked for again
};

/// On opening: the item that was asked for, else the first reply after the one read last, else the end.
Opening openingOf(const std::vector<wire::TranscriptItem>& items, const std::optional<std::string>& selectedItemId,
                  const std::optional<std::string>& lastReadItemId);

/// When the items changed: the first reply that was not known, else the first own message that was not known and is
/// still on its way, else nowhere.
std::optional<ScrollTarget> targetOfChange(const std::vector<wire::TranscriptItem>& items, const ItemIDs& known);

/// The ids of all items.
ItemIDs idsOf(const std::vector<wire::TranscriptItem>& items);

}  // namespace varnel::transcript
