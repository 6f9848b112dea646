// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include "core/wire/session.h"

namespace varnel::screens {

/// How a state of a conversation is shown: its word, its symbol and the name of its colour in the theme.
struct StateLook {
  QString word;
  QString symbol;
  QString tone;
};
StateLook lookOf(wire::CodexTurnState state);

/// One conversation as the list shows it: nothing left to work out.
struct SessionRow {
  QString sessionId;
  QString project;
  QString commentary;  ///< one paragraph: line breaks have become blanks
  QString stateWord;
  QString stateSymbol;
  QString stateTone;
  QString when;  ///< relative to now, "2 minutes ago"
  bool pinned = false;
  bool live = false;
  bool active = false;  ///< a turn runs: it cannot be archived
  bool unread = false;
  QString draft;   ///< what was typed and not sent, one paragraph
  QString spoken;  ///< the whole row in one sentence, for assistive tools

  [[nodiscard]] const QString& identity() const { return sessionId; }
  bool operator==(const SessionRow&) const = default;
};

/// What this device alone knows of a conversation.
struct LocalMarks {
  bool unread = false;
  QString draft;
};

/// `now` in seconds since 1970.
SessionRow makeSessionRow(const wire::SessionSummary& session, double now, const LocalMarks& marks = {});

}  // namespace varnel::screens
