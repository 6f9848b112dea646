// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/shell/shell_state.h"

#include <algorithm>
#include <utility>

#include "app/model/app_model.h"

namespace varnel::screens {

ShellState::ShellState(model::AppModel& model, AppSettings& settings, ScreenSurroundings surroundings, QObject* parent)
    : QObject(parent),
      m_model(model),
      m_settings(settings),
      m_surroundings(std::move(surroundings)),
      m_pairing(pairWith(model), m_surroundings) {
  connect(&model, &model::AppModel::credentialsChanged, this, &ShellState::followPairing);
  connect(&model, &model::AppModel::errorMessageChanged, this, &ShellState::errorChanged);
  connect(&model, &model::AppModel::sessionsChanged, this, &ShellState::windowTitleChanged);
  followPairing();
}

bool ShellState::hasError() const {
  return m_model.hasErrorMessage();
}

QString ShellState::errorText() const {
  return m_model.hasErrorMessage() ? m_model.errorText() : tr("Unknown error");
}

int ShellState::needingInput() const {
  return static_cast<int>(
      std::ranges::count(m_model.sessions(), wire::CodexTurnState::NeedsInput, &wire::SessionSummary::state));
}

QString ShellState::windowTitle() const {
  const int count = needingInput();
  return count == 0 ? tr("Varnel") : tr("(%1) Varnel").arg(count);
}

void ShellState::dismissError() {
  m_model.clearErrorMessage();
}

void ShellState::activated() {
  m_model.start();
}

void ShellState::windowClosed() {
  if (!m_settings.isOn(AppSettings::kKeepRunning)) quit();
}

void ShellState::quit() {
  m_surroundings.quit();
}

void ShellState::openLink(const QString& url) {
  m_model.handle(url.toStdString());
  emit raised();
}

void ShellState::followPairing() {
  if (m_model.isPaired() == !m_tabs.isNull()) return;
  MainTabViewState* former = m_tabs;
  m_tabs = former ? nullptr : new MainTabViewState(m_model, m_settings, m_surroundings, this);
  emit tabsChanged();
  // After the signal, which sends its screens to be deleted: they read their state up to their end.
  if (former) former->deleteLater();
}

}  // namespace varnel::screens
