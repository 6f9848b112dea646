// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <vector>

#include "core/wire/request.h"
#include "core/wire/transcript.h"

namespace varnel::screens {

/// One entry of a conversation as the screen shows it: a message in full, or one line for something the agent did.
struct TranscriptRow {
  QString itemId;
  bool message = false;
  bool fromUser = false;
  QString author;  ///< of a message
  QString text;    ///< of a message: what was written, never markup; of a tool: its title
  QString status;  ///< of a tool: the agent's word for how it stands, made readable; empty when it gave none
  QString spoken;  ///< the whole row in one sentence, for assistive tools

  [[nodiscard]] const QString& identity() const { return itemId; }
  bool operator==(const TranscriptRow&) const = default;
};

/// Something the agent waits for.
struct RequestNotice {
  QString requestId;
  QString method;  ///< what is asked for

  [[nodiscard]] const QString& identity() const { return requestId; }
  bool operator==(const RequestNotice&) const = default;
};

/// A row for each message, and one for each of the tools between two of them.
std::vector<TranscriptRow> makeTranscriptRows(const std::vector<wire::TranscriptItem>& items);

/// The requests that are not resolved, in their order.
std::vector<RequestNotice> makeRequestNotices(const std::vector<wire::PendingRequest>& requests);

}  // namespace varnel::screens
