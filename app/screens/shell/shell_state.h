// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <functional>

#include "app/screens/pairing/pairing_view_state.h"
#include "app/screens/session/session_view_state.h"
#include "app/screens/sessions/sessions_view_state.h"

namespace varnel::screens {

/// What the window shows: the pairing screen or the conversations, the open conversation, and the error alert over
/// either. Owns the state of every screen.
class ShellState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool paired READ isPaired NOTIFY pairedChanged)
  Q_PROPERTY(bool hasError READ hasError NOTIFY errorChanged)
  Q_PROPERTY(QString errorText READ errorText NOTIFY errorChanged)
  Q_PROPERTY(varnel::screens::PairingViewState* pairing READ pairing CONSTANT)
  Q_PROPERTY(varnel::screens::SessionsViewState* sessions READ sessions CONSTANT)
  Q_PROPERTY(varnel::screens::SessionViewState* session READ session NOTIFY sessionChanged)

 public:
  struct Surroundings {
    std::function<double()> now;         ///< seconds since 1970
    std::function<QString()> clipboard;  ///< the text that was copied last
    SessionServices session = systemServices();
  };

  ShellState(model::AppModel& model, Surroundings surroundings, QObject* parent = nullptr);

  [[nodiscard]] bool isPaired() const;
  [[nodiscard]] bool hasError() const;
  [[nodiscard]] QString errorText() const;
  [[nodiscard]] PairingViewState* pairing() { return &m_pairing; }
  [[nodiscard]] SessionsViewState* sessions() { return &m_sessions; }
  /// The open conversation, or null.
  [[nodiscard]] SessionViewState* session() { return m_session; }

  Q_INVOKABLE void dismissError();
  /// To be told whenever the window is shown or comes to the front again.
  Q_INVOKABLE void activated();

 signals:
  void pairedChanged();
  void errorChanged();
  void sessionChanged();

 private:
  void replaceSession();

  model::AppModel& m_model;
  PairingViewState m_pairing;
  SessionsViewState m_sessions;
  SessionServices m_sessionServices;
  QPointer<SessionViewState> m_session;
};

}  // namespace varnel::screens
