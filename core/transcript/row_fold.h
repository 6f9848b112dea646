// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "core/base/splice.h"
#include "core/wire/transcript.h"

namespace varnel::transcript {

/// Whether an item stands in a row of its own.
bool isMessage(const wire::TranscriptItem& item);
/// Reasoning and plan items are not shown and part no run.
bool isDropped(const wire::TranscriptItem& item);

/// Which items of a transcript each row of the conversation screen shows, kept in step with the transcript in the time
/// that its changes take. `transcriptDisplayRows` says the same as copies.
class RowFold {
 public:
  /// A message, or a run of what stands between two of them with the dropped items in it: items `first` to `last`.
  struct Row {
    bool isRun = false;
    std::size_t first = 0;
    std::size_t last = 0;

    bool operator==(const Row&) const = default;
  };

  using Rows = std::vector<Row>;

  [[nodiscard]] const Rows& rows() const { return m_rows; }

  /// `items` is the transcript after that change of it. Says which rows became others; those behind them show the same
  /// items at other places.
  base::Splice update(std::span<const wire::TranscriptItem> items, const base::Splice& change);

 private:
  base::Splice put(Rows::iterator begin, Rows::iterator end, Rows fresh, const base::Splice& change);

  Rows m_rows;
};

}  // namespace varnel::transcript
