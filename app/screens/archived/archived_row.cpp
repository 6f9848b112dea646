// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/archived/archived_row.h"

#include <boost/describe/class.hpp>

#include "app/lists/record_roles.h"
#include "app/screens/sessions/conversation_title.h"
#include "app/ui/date_text.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(ArchivedRow, (), (sessionId, title, date, spoken))

ArchivedRow makeArchivedRow(const wire::ArchivedSession& session) {
  ArchivedRow row{.sessionId = QString::fromStdString(session.id),
                  .title = conversationTitle(session.name, session.cwd),
                  .date = session.updatedAt ? ui::dateText(*session.updatedAt, ui::DateForm::MediumDate) : QString(),
                  .spoken = {}};
  row.spoken = row.date.isEmpty() ? row.title : row.title + QStringLiteral(", ") + row.date;
  return row;
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::ArchivedRow>>&
varnel::lists::rolesOf<varnel::screens::ArchivedRow>();
