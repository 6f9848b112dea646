// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/session_view_state.h"

#include <QtCore/QPointer>
#include <algorithm>
#include <stop_token>
#include <utility>

#include "app/client/api_client.h"
#include "app/model/app_model.h"

namespace varnel::screens {

SessionViewState::SessionViewState(model::AppModel& model, const QString& sessionId, QObject* parent)
    : QObject(parent), m_model(model), m_sessionId(sessionId.toStdString()) {
  connect(&model, &model::AppModel::sessionsChanged, this, [this] {
    emit summaryChanged();
    emit composerChanged();
  });
  connect(&model, &model::AppModel::modelsChanged, this, &SessionViewState::composerChanged);
  connect(&model, &model::AppModel::sessionPreferencesChanged, this, &SessionViewState::composerChanged);
  connect(&model, &model::AppModel::transcriptChanged, this, [this](const std::string& id) {
    if (id == m_sessionId) updateRows();
  });
  connect(&model, &model::AppModel::pendingRequestsChanged, this, [this](const std::string& id) {
    if (id == m_sessionId) updateNotices();
  });
  updateRows();
  updateNotices();
  m_model.loadSession(m_sessionId);
  loadControls();
}

QString SessionViewState::title() const {
  return session() != nullptr ? QString::fromStdString(session()->project) : tr("Session");
}

bool SessionViewState::isWorking() const {
  return session() != nullptr && session()->state == wire::CodexTurnState::Working;
}

bool SessionViewState::isLoading() const {
  return !m_controlsReady && !m_model.isLoaded(m_sessionId) && m_model.transcript(m_sessionId).empty();
}

void SessionViewState::setMessage(const QString& message) {
  if (m_message == message) return;
  m_message = message;
  emit messageChanged();
  emit composerChanged();
}

bool SessionViewState::isSendEnabled() const {
  if (isActive()) return !m_stopping;
  return !m_sending && !m_message.trimmed().isEmpty() && preferences();
}

QString SessionViewState::sendLabel() const {
  return isActive() ? tr("Stop current task") : tr("Send message");
}

QString SessionViewState::sendSymbol() const {
  return isActive() ? QStringLiteral("stop.fill") : QStringLiteral("arrow.up");
}

void SessionViewState::sendOrStop() {
  if (!isSendEnabled()) return;
  if (isActive()) {
    stopTask();
  } else {
    send();
  }
}

void SessionViewState::send() {
  if (isActive() || !isSendEnabled()) return;
  const QString text = m_message.trimmed();
  m_sending = true;
  setMessage({});
  emit composerChanged();
  sendText(text);
}

const wire::SessionSummary* SessionViewState::session() const {
  return m_model.session(m_sessionId);
}

bool SessionViewState::isActive() const {
  return session() != nullptr && session()->active;
}

std::optional<wire::ConversationPreferences> SessionViewState::preferences() const {
  if (!m_controlsReady) return std::nullopt;
  if (auto stored = m_model.preferences(m_sessionId)) {
    stored->serviceTier = stored->serviceTier == "priority" ? "priority" : "default";
    if (stored->model.empty() || stored->reasoningEffort.empty()) return std::nullopt;
    return stored;
  }
  const auto& models = m_model.models();
  if (models.empty()) return std::nullopt;
  const auto preferred = std::ranges::find_if(models, &wire::ModelOption::isDefault);
  const wire::ModelOption& chosen = preferred == models.end() ? models.front() : *preferred;
  wire::ConversationPreferences result{.model = chosen.id, .reasoningEffort = {}, .serviceTier = "default"};
  if (chosen.defaultEffort) {
    result.reasoningEffort = *chosen.defaultEffort;
  } else if (!chosen.efforts.empty()) {
    result.reasoningEffort = chosen.efforts.front();
  }
  if (result.model.empty() || result.reasoningEffort.empty()) return std::nullopt;
  return result;
}

void SessionViewState::updateRows() {
  m_rows.assign(makeTranscriptRows(m_model.transcript(m_sessionId)));
  emit transcriptChanged();
}

void SessionViewState::updateNotices() {
  m_notices.assign(makeRequestNotices(m_model.pendingRequests(m_sessionId)));
}

// The conversation is read once more behind the lists: what it says of itself is the newer.
QCoro::Task<> SessionViewState::loadControls() {
  const QPointer self(this);
  const QPointer model(&m_model);
  co_await model->refresh(false);
  if (!self || !model) co_return;
  co_await model->loadSession(m_sessionId);
  if (!self || !model) co_return;
  m_controlsReady = true;
  emit transcriptChanged();
  emit composerChanged();
}

QCoro::Task<> SessionViewState::sendText(QString text) {
  const QPointer self(this);
  const auto chosen = preferences();
  const bool sent = chosen && co_await m_model.sendMessage(m_sessionId, text.toStdString(), *chosen, {}, false);
  if (!self) co_return;
  m_sending = false;
  // Words typed while the failed message was under way are kept behind it.
  if (!sent) setMessage(m_message.isEmpty() ? text : text + QLatin1Char('\n') + m_message);
  emit composerChanged();
}

QCoro::Task<> SessionViewState::stopTask() {
  const QPointer self(this);
  const QPointer model(&m_model);
  const std::string id = m_sessionId;
  const std::stop_token pairing = model->pairingToken();
  m_stopping = true;
  emit composerChanged();
  const auto interrupted = co_await model->client().interrupt(id, pairing);
  if (!model) co_return;
  if (self) {
    m_stopping = false;
    emit composerChanged();
  }
  if (pairing.stop_requested()) co_return;
  if (!interrupted) model->report(interrupted.error());
  co_await model->loadSession(id);
}

}  // namespace varnel::screens
