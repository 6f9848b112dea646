// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/shell/shell_state.h"

#include <utility>

#include "app/model/app_model.h"

namespace varnel::screens {

ShellState::ShellState(model::AppModel& model, Surroundings surroundings, QObject* parent)
    : QObject(parent),
      m_model(model),
      m_pairing(pairWith(model), std::move(surroundings.clipboard)),
      m_sessions(model, std::move(surroundings.now)),
      m_sessionServices(std::move(surroundings.session)) {
  connect(&model, &model::AppModel::credentialsChanged, this, &ShellState::pairedChanged);
  connect(&model, &model::AppModel::errorMessageChanged, this, &ShellState::errorChanged);
  connect(&m_sessions, &SessionsViewState::openIdChanged, this, &ShellState::replaceSession);
}

bool ShellState::isPaired() const {
  return m_model.isPaired();
}

bool ShellState::hasError() const {
  return m_model.hasErrorMessage();
}

QString ShellState::errorText() const {
  return m_model.hasErrorMessage() ? m_model.errorText() : tr("Unknown error");
}

void ShellState::dismissError() {
  m_model.clearErrorMessage();
}

void ShellState::activated() {
  m_model.start();
}

void ShellState::replaceSession() {
  SessionViewState* former = m_session;
  const QString id = m_sessions.openId();
  m_session = id.isEmpty() ? nullptr : new SessionViewState(m_model, id, m_sessionServices, this);
  emit sessionChanged();
  // After the signal, which sends the former screen to be deleted: that screen reads its state up to its end.
  if (former) former->deleteLater();
}

}  // namespace varnel::screens
