// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/sessions_view_state.h"

#include <QtCore/QPointer>
#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

#include "app/model/app_model.h"

namespace varnel::screens {
namespace {

constexpr std::chrono::seconds kTimesRefreshed{20};

}  // namespace

SessionsViewState::SessionsViewState(model::AppModel& model, const ScreenSurroundings& surroundings, QObject* parent)
    : QObject(parent),
      m_model(model),
      m_surroundings(surroundings),
      m_seen(surroundings.defaults),
      m_connection(model, surroundings.now),
      m_limits(model),
      m_search(model),
      m_actions(model) {
  connect(&model, &model::AppModel::sessionsChanged, this, &SessionsViewState::updateRows);
  connect(&model, &model::AppModel::tokenRefusedChanged, this, &SessionsViewState::rowsChanged);
  connect(&model, &model::AppModel::refreshedChanged, this, &SessionsViewState::rowsChanged);
  connect(&model, &model::AppModel::selectedSessionIdChanged, this, &SessionsViewState::openSelected);
  connect(&model, &model::AppModel::credentialsChanged, this, [this] {
    if (m_model.isPaired()) return;
    m_seen.forget();
    close();
  });
  connect(&model, &model::AppModel::lastContactChanged, this, [this] {
    if (m_saved) updateRows();
  });
  connect(&m_search, &ConversationSearch::opened, this, &SessionsViewState::open);
  connect(&m_clockTick, &QTimer::timeout, this, &SessionsViewState::updateRows);
  m_clockTick.start(kTimesRefreshed);
  updateRows();
  openSelected();
}

bool SessionsViewState::isLoading() const {
  return m_rows.rowCount() == 0 && !m_model.isRefreshed() && !m_model.isTokenRefused();
}

bool SessionsViewState::isEmpty() const {
  return m_rows.rowCount() == 0 && !isLoading();
}

void SessionsViewState::setShowingArchived(bool showing) {
  if (std::exchange(m_showingArchived, showing) != showing) emit sheetsChanged();
}

void SessionsViewState::setShowingUsage(bool showing) {
  if (std::exchange(m_showingUsage, showing) != showing) emit sheetsChanged();
}

void SessionsViewState::open(const QString& sessionId) {
  setOpenId(sessionId.toStdString());
}

void SessionsViewState::close() {
  setOpenId({});
}

void SessionsViewState::refresh() {
  if (!m_refreshing) refreshAll();
}

int SessionsViewState::openRow() const {
  const auto& rows = m_rows.records();
  const auto row = std::ranges::find(rows, openId(), &SessionRow::sessionId);
  return row == rows.end() ? -1 : static_cast<int>(row - rows.begin());
}

void SessionsViewState::openNeighbour(int distance) {
  const int count = m_rows.rowCount();
  if (count == 0) return;
  const int row = openRow();
  const int wanted = row < 0 ? 0 : std::clamp(row + distance, 0, count - 1);
  open(m_rows.records()[static_cast<std::size_t>(wanted)].sessionId);
}

void SessionsViewState::openNextNeedingInput() {
  const auto& sessions = m_model.sessions();
  const auto count = sessions.size();
  const auto first = static_cast<std::size_t>(openRow()) + 1;  // 0 for none: that row is -1
  for (std::size_t step = 0; step < count; ++step) {
    const auto& session = sessions[(first + step) % count];
    if (session.state != wire::CodexTurnState::NeedsInput) continue;
    setOpenId(session.id);
    return;
  }
}

void SessionsViewState::updateRows() {
  const auto* const savedSessions = m_surroundings.savedSessions();
  m_saved = savedSessions != nullptr && !savedSessions->empty();
  const auto& sessions = m_saved ? *savedSessions : m_model.sessions();
  m_seen.listed(sessions);
  if (const auto* const shown = m_model.session(m_openId)) m_seen.see(*shown);
  std::vector<SessionRow> rows;
  rows.reserve(sessions.size());
  for (const wire::SessionSummary& session : sessions) {
    rows.push_back(makeSessionRow(session, m_surroundings.now(),
                                  {.unread = m_seen.isUnread(session), .draft = m_surroundings.draftOf(session.id)}));
  }
  m_rows.assign(std::move(rows));
  emit rowsChanged();
}

void SessionsViewState::openSelected() {
  if (!m_model.selectedSessionId()) return;
  std::string wanted = *m_model.selectedSessionId();
  m_model.selectSession(std::nullopt);
  setOpenId(std::move(wanted));
  emit broughtForward();
}

void SessionsViewState::setOpenId(std::string sessionId) {
  if (m_openId == sessionId) return;
  m_openId = std::move(sessionId);
  emit openIdChanged();
  updateRows();
}

QCoro::Task<> SessionsViewState::refreshAll() {
  const QPointer self(this);
  m_refreshing = true;
  emit refreshingChanged();
  co_await m_model.refresh(true);
  if (!self) co_return;
  m_refreshing = false;
  emit refreshingChanged();
}

}  // namespace varnel::screens
