// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

#include "app/screens/archived/archived_sessions_view_state.h"
#include "app/screens/newsession/new_session_view_state.h"
#include "app/screens/screen_surroundings.h"
#include "app/screens/session/session_view_state.h"
#include "app/screens/sessions/sessions_view_state.h"
#include "app/screens/settings/settings_view_state.h"
#include "app/screens/shell/quick_switcher_state.h"
#include "app/screens/usage/usage_dashboard_state.h"

namespace varnel::screens {

/// What there is to see while the application is paired: three tabs, two sheets and the open conversation. Made with
/// the pairing and gone with it, so that nothing of one pairing is left in the next.
class MainTabViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(int tab READ tab WRITE setTab NOTIFY tabChanged)
  Q_PROPERTY(varnel::screens::SessionsViewState* sessions READ sessions CONSTANT)
  Q_PROPERTY(varnel::screens::NewSessionViewState* newSession READ newSession CONSTANT)
  Q_PROPERTY(varnel::screens::SettingsViewState* settings READ settings CONSTANT)
  Q_PROPERTY(varnel::screens::UsageDashboardState* usage READ usage CONSTANT)
  Q_PROPERTY(varnel::screens::ArchivedSessionsViewState* archived READ archived CONSTANT)
  Q_PROPERTY(varnel::screens::QuickSwitcherState* switcher READ switcher CONSTANT)
  Q_PROPERTY(varnel::screens::SessionViewState* session READ session NOTIFY sessionChanged)

 public:
  enum Tab { Sessions, New, Settings };
  Q_ENUM(Tab)

  MainTabViewState(model::AppModel& model, AppSettings& settings, const ScreenSurroundings& surroundings,
                   QObject* parent = nullptr);

  [[nodiscard]] int tab() const { return m_tab; }
  void setTab(int tab);
  [[nodiscard]] SessionsViewState* sessions() { return &m_sessions; }
  [[nodiscard]] NewSessionViewState* newSession() { return &m_newSession; }
  [[nodiscard]] SettingsViewState* settings() { return &m_settings; }
  [[nodiscard]] UsageDashboardState* usage() { return &m_usage; }
  [[nodiscard]] ArchivedSessionsViewState* archived() { return &m_archived; }
  [[nodiscard]] QuickSwitcherState* switcher() { return &m_switcher; }
  /// The open conversation, or null.
  [[nodiscard]] SessionViewState* session() { return m_session; }

 signals:
  void tabChanged();
  void sessionChanged();

 private:
  SessionViewState* makeSession(const QString& sessionId, QObject* parent);
  void replaceSession();
  void bringForward();

  model::AppModel& m_model;
  SessionServices m_sessionServices;
  SessionsViewState m_sessions;
  NewSessionViewState m_newSession;
  SettingsViewState m_settings;
  UsageDashboardState m_usage;
  ArchivedSessionsViewState m_archived;
  QuickSwitcherState m_switcher;
  QPointer<SessionViewState> m_session;
  int m_tab = Sessions;
};

}  // namespace varnel::screens
