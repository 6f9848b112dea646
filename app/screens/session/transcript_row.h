// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <set>
#include <string>
#include <vector>

#include "core/wire/transcript.h"

namespace varnel::screens {

/// Something the agent did, in an unfolded group.
struct ToolEntry {
  QString title;
  QString status;  ///< the agent's word for how it stands, made readable; empty when it gave none
  QString diff;    ///< HTML of the changes to files, made here; empty when there are none
  QString detail;  ///< the whole detail as JSON; empty when there is none
  bool operator==(const ToolEntry&) const = default;
};

/// One row of a conversation: a message, or everything the agent did between two messages. The text stays what the
/// bridge sent; it is parsed where it is shown.
struct TranscriptRow {
  std::string rowId;
  std::string kind;       ///< message or tools: the name of its delegate
  bool fromUser = false;  ///< of a message
  std::string text;       ///< of a message: markdown; of a group: what stands on it while it is folded
  bool expanded = false;
  std::vector<ToolEntry> entries;  ///< of an expanded group

  [[nodiscard]] const std::string& identity() const { return rowId; }
  bool operator==(const TranscriptRow&) const = default;
};

using RowIDs = std::set<std::string, std::less<>>;

/// The rows of a transcript, with the groups in `expanded` unfolded.
std::vector<TranscriptRow> makeTranscriptRows(const std::vector<wire::TranscriptItem>& items, const RowIDs& expanded);

}  // namespace varnel::screens
