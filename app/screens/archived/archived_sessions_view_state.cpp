// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/archived/archived_sessions_view_state.h"

#include <QtCore/QLocale>
#include <utility>
#include <vector>

#include "app/model/app_model.h"

namespace varnel::screens {

namespace {

bool holds(const std::optional<std::string>& text, const QString& lowered) {
  return QLocale().toLower(QString::fromStdString(text.value_or(std::string()))).contains(lowered);
}

}  // namespace

ArchivedSessionsViewState::ArchivedSessionsViewState(model::AppModel& model, MakeSession makeSession, QObject* parent)
    : QObject(parent), m_model(model), m_makeSession(std::move(makeSession)) {
  connect(&model, &model::AppModel::archivedSessionsChanged, this, &ArchivedSessionsViewState::updateRows);
  connect(&model, &model::AppModel::archivedNextCursorChanged, this, &ArchivedSessionsViewState::changed);
  updateRows();
}

void ArchivedSessionsViewState::setSearch(const QString& search) {
  if (search == m_search) return;
  m_search = search;
  updateRows();
}

bool ArchivedSessionsViewState::isEmpty() const {
  return m_rows.rowCount() == 0 && !isLoading();
}

bool ArchivedSessionsViewState::isLoading() const {
  return m_loads > 0 && m_model.archivedSessions().empty();
}

bool ArchivedSessionsViewState::hasMore() const {
  return m_search.isEmpty() && m_model.archivedNextCursor();
}

void ArchivedSessionsViewState::appeared() {
  load(false);
}

void ArchivedSessionsViewState::disappeared() {
  close();
  setSearch({});
}

void ArchivedSessionsViewState::loadMore() {
  load(true);
}

QCoro::Task<> ArchivedSessionsViewState::load(bool more) {
  const QPointer self(this);
  ++m_loads;
  emit changed();
  co_await m_model.loadArchived(more);
  if (!self) co_return;
  --m_loads;
  emit changed();
}

void ArchivedSessionsViewState::unarchive(const QString& sessionId) {
  m_model.unarchive(sessionId.toStdString());
}

void ArchivedSessionsViewState::open(const QString& sessionId) {
  close();
  m_session = m_makeSession(sessionId, this);
  emit sessionChanged();
}

void ArchivedSessionsViewState::close() {
  if (!m_session) return;
  SessionViewState* former = std::exchange(m_session, nullptr);
  emit sessionChanged();
  // After the signal, which sends its screen to be deleted: that screen reads its state up to its end.
  former->deleteLater();
}

void ArchivedSessionsViewState::updateRows() {
  const QString lowered = QLocale().toLower(m_search);
  std::vector<ArchivedRow> rows;
  for (const auto& session : m_model.archivedSessions()) {
    if (m_search.isEmpty() || holds(session.name, lowered) || holds(session.cwd, lowered)) {
      rows.push_back(makeArchivedRow(session));
    }
  }
  m_rows.assign(std::move(rows));
  emit changed();
}

}  // namespace varnel::screens
