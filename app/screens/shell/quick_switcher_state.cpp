// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/shell/quick_switcher_state.h"

#include <algorithm>
#include <array>
#include <boost/describe/class.hpp>
#include <string>
#include <utility>
#include <vector>

#include "app/lists/record_roles.h"
#include "app/model/app_model.h"
#include "app/screens/sessions/session_row.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(SwitcherRow, (), (sessionId, title, symbol, tone, spoken))

namespace {

SwitcherRow makeRow(const wire::SessionSummary& session) {
  StateLook look = lookOf(session.state);
  const QString project = QString::fromStdString(session.project);
  const QString name = QString::fromStdString(session.name.value_or(std::string()));
  SwitcherRow row{.sessionId = QString::fromStdString(session.id),
                  .title = name.isEmpty() || name == project ? project : project + QStringLiteral(" · ") + name,
                  .symbol = std::move(look.symbol),
                  .tone = std::move(look.tone),
                  .spoken = {}};
  row.spoken = row.title + QStringLiteral(", ") + look.word;
  return row;
}

bool matches(const wire::SessionSummary& session, const QString& text) {
  const std::array parts{session.project, session.name.value_or(std::string()), session.cwd.value_or(std::string())};
  return std::ranges::any_of(parts, [&text](const std::string& part) {
    return QString::fromStdString(part).contains(text, Qt::CaseInsensitive);
  });
}

}  // namespace

QuickSwitcherState::QuickSwitcherState(model::AppModel& model, QObject* parent) : QObject(parent), m_model(model) {
  connect(&model, &model::AppModel::sessionsChanged, this, &QuickSwitcherState::updateRows);
  updateRows();
}

void QuickSwitcherState::setText(const QString& text) {
  if (text == m_text) return;
  m_text = text;
  updateRows();
  emit changed();
}

void QuickSwitcherState::choose(int row) {
  if (row < 0 || row >= m_rows.rowCount()) return;
  emit chosen(m_rows.records()[static_cast<std::size_t>(row)].sessionId);
}

void QuickSwitcherState::updateRows() {
  std::vector<SwitcherRow> rows;
  const QString wanted = m_text.trimmed();
  for (const auto& session : m_model.sessions()) {
    if (matches(session, wanted)) rows.push_back(makeRow(session));
  }
  m_rows.assign(std::move(rows));
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::SwitcherRow>>&
varnel::lists::rolesOf<varnel::screens::SwitcherRow>();
