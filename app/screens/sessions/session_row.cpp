// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/session_row.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <boost/describe/class.hpp>

#include "app/lists/record_roles.h"
#include "app/ui/relative_time.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(SessionRow, (),
                      (sessionId, project, commentary, stateWord, stateSymbol, stateTone, when, pinned, live, active,
                       unread, draft, spoken))

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(SessionRow)
};

}  // namespace

StateLook lookOf(wire::CodexTurnState state) {
  using enum wire::CodexTurnState;
  switch (state) {
    case Working:
      return {Words::tr("Working"), QStringLiteral("sparkles"), QStringLiteral("blue")};
    case NeedsInput:
      return {Words::tr("Needs input"), QStringLiteral("exclamationmark.bubble.fill"), QStringLiteral("orange")};
    case Done:
      return {Words::tr("Done"), QStringLiteral("checkmark.circle.fill"), QStringLiteral("green")};
    case Failed:
      return {Words::tr("Failed"), QStringLiteral("xmark.octagon.fill"), QStringLiteral("red")};
    case Interrupted:
      return {Words::tr("Interrupted"), QStringLiteral("pause.circle.fill"), QStringLiteral("secondary")};
    case Stale:
      return {Words::tr("Stale"), QStringLiteral("clock.badge.exclamationmark"), QStringLiteral("secondary")};
  }
  return {};
}

SessionRow makeSessionRow(const wire::SessionSummary& session, double now, const LocalMarks& marks) {
  StateLook look = lookOf(session.state);
  SessionRow row{
      .sessionId = QString::fromStdString(session.id),
      .project = QString::fromStdString(session.project),
      .commentary = QString::fromStdString(session.latestCommentary).simplified(),
      .stateWord = std::move(look.word),
      .stateSymbol = std::move(look.symbol),
      .stateTone = std::move(look.tone),
      .when = ui::relativeTime(session.updatedAt, now),
      .pinned = session.pinned,
      .live = session.tracked.value_or(false),
      .active = session.active,
      .unread = marks.unread,
      .draft = marks.draft.simplified(),
      .spoken = {},
  };
  QStringList spoken{row.project, row.stateWord};
  if (row.pinned) spoken << Words::tr("Pinned");
  if (row.live) spoken << Words::tr("Live");
  if (row.unread) spoken << Words::tr("Unread");
  if (!row.commentary.isEmpty()) spoken << row.commentary;
  if (!row.draft.isEmpty()) spoken << Words::tr("Draft: %1").arg(row.draft);
  if (!row.when.isEmpty()) spoken << row.when;
  row.spoken = spoken.join(QStringLiteral(", "));
  return row;
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::SessionRow>>&
varnel::lists::rolesOf<varnel::screens::SessionRow>();
