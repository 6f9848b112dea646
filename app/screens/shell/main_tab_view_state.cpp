// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/shell/main_tab_view_state.h"

#include <algorithm>
#include <utility>

#include "app/model/app_model.h"

namespace varnel::screens {

MainTabViewState::MainTabViewState(model::AppModel& model, AppSettings& settings,
                                   const ScreenSurroundings& surroundings, QObject* parent)
    : QObject(parent),
      m_model(model),
      m_sessionServices(surroundings.session),
      m_sessions(model, surroundings),
      m_newSession(model),
      m_settings(model, settings, surroundings),
      m_usage(model),
      m_archived(model, [this](const QString& id, QObject* owner) { return makeSession(id, owner); }),
      m_switcher(model) {
  connect(&m_sessions, &SessionsViewState::openIdChanged, this, &MainTabViewState::replaceSession);
  connect(&m_sessions, &SessionsViewState::broughtForward, this, &MainTabViewState::bringForward);
  connect(&m_switcher, &QuickSwitcherState::chosen, this, [this](const QString& id) {
    bringForward();
    m_sessions.open(id);
  });
  replaceSession();
}

void MainTabViewState::setTab(int tab) {
  tab = std::clamp<int>(tab, Sessions, Settings);
  if (std::exchange(m_tab, tab) == tab) return;
  emit tabChanged();
  if (m_tab == New) m_newSession.appeared();
}

SessionViewState* MainTabViewState::makeSession(const QString& sessionId, QObject* parent) {
  return new SessionViewState(m_model, sessionId, m_sessionServices, parent);
}

void MainTabViewState::replaceSession() {
  SessionViewState* former = m_session;
  const QString id = m_sessions.openId();
  if (!former && id.isEmpty()) return;
  m_session = id.isEmpty() ? nullptr : makeSession(id, this);
  emit sessionChanged();
  // After the signal, which sends the former screen to be deleted: that screen reads its state up to its end.
  if (former) former->deleteLater();
}

void MainTabViewState::bringForward() {
  m_sessions.setShowingArchived(false);
  m_sessions.setShowingUsage(false);
  setTab(Sessions);
}

}  // namespace varnel::screens
