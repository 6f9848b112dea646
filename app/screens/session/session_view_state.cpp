// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/session_view_state.h"

#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <stop_token>
#include <utility>

#include "app/client/api_client.h"
#include "app/device/speech_transcriber.h"
#include "app/model/app_model.h"
#include "core/base/plain_sight.h"

namespace varnel::screens {

SessionViewState::SessionViewState(model::AppModel& model, const QString& sessionId, const SessionServices& services,
                                   QObject* parent)
    : QObject(parent),
      m_model(model),
      m_sessionId(sessionId.toStdString()),
      m_services(services),
      m_transcript(model, m_sessionId, this),
      m_settings(model, m_sessionId, this),
      m_composer(model, m_sessionId, m_settings, services, this),
      m_dictation(services.makeSpeech ? services.makeSpeech() : nullptr, model, m_composer, this),
      m_requests([this](wire::PendingRequest request) { return makeCard(std::move(request)); }, this) {
  connect(&model, &model::AppModel::sessionsChanged, this, &SessionViewState::updateSummary);
  connect(&model, &model::AppModel::archivedSessionIdsChanged, this, &SessionViewState::archivedChanged);
  connect(&model, &model::AppModel::pendingRequestsChanged, this, [this](const std::string& id) {
    if (id == m_sessionId) m_requests.update(m_model.pendingRequests(m_sessionId));
  });
  connect(&m_requests, &RequestCards::countChanged, this, &SessionViewState::requestCountChanged);
  m_requests.update(m_model.pendingRequests(m_sessionId));
  updateSummary();
}

QString SessionViewState::title() const {
  return session() != nullptr ? QString::fromStdString(session()->project) : tr("Session");
}

bool SessionViewState::isWorking() const {
  return session() != nullptr && session()->state == wire::CodexTurnState::Working;
}

bool SessionViewState::isPinned() const {
  return session() != nullptr && session()->pinned;
}

QString SessionViewState::pinSymbol() const {
  return isPinned() ? QStringLiteral("pin.fill") : QStringLiteral("pin");
}

QString SessionViewState::pinLabel() const {
  return isPinned() ? tr("Unpin conversation") : tr("Pin conversation");
}

bool SessionViewState::isArchived() const {
  return m_model.archivedSessionIds().contains(m_sessionId);
}

void SessionViewState::setRenameText(const QString& text) {
  if (m_renameText == text) return;
  m_renameText = text;
  emit renameChanged();
}

QString SessionViewState::linkAddress() const {
  return QString::fromStdString(base::inPlainSight(m_link.toStdString()));
}

bool SessionViewState::linkOpens() const {
  const QUrl url(m_link, QUrl::StrictMode);
  const QString scheme = url.scheme();
  return url.isValid() && !url.host().isEmpty() &&
         (scheme == QLatin1String("https") || scheme == QLatin1String("http"));
}

void SessionViewState::togglePin() {
  pin();
}

void SessionViewState::beginRename() {
  const auto* summary = session();
  m_renameText = summary == nullptr ? QString() : QString::fromStdString(summary->name.value_or(summary->project));
  setShowingRename(true);
}

void SessionViewState::saveName() {
  if (!isRenameEnabled()) return;
  m_model.rename(m_sessionId, m_renameText.toStdString());
  setShowingRename(false);
}

void SessionViewState::cancelRename() {
  setShowingRename(false);
}

void SessionViewState::archive() {
  moveToArchive();
}

void SessionViewState::unarchive() {
  m_model.unarchive(m_sessionId);
}

void SessionViewState::askLink(const QString& address) {
  m_link = address;
  emit linkChanged();
}

void SessionViewState::openLink() {
  if (linkOpens()) m_services.openUrl(QUrl(m_link, QUrl::StrictMode));
  dismissLink();
}

void SessionViewState::copyLink() {
  copyText(m_link);
  dismissLink();
}

void SessionViewState::dismissLink() {
  askLink({});
}

void SessionViewState::copyText(const QString& text) {
  m_services.copyText(text);
  emit copied();
}

void SessionViewState::useAgain(const QString& text) {
  m_composer.putInFront(text);
}

void SessionViewState::copyResumeCommand() {
  QString id = sessionId();
  static const QRegularExpression kPlain(QStringLiteral("^[A-Za-z0-9._-]+$"));
  if (!kPlain.match(id).hasMatch()) {
    id = QLatin1Char('\'') + id.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
  }
  copyText(QStringLiteral("varnel -- resume ") + id);
}

const wire::SessionSummary* SessionViewState::session() const {
  return m_model.session(m_sessionId);
}

PendingRequestCardState* SessionViewState::makeCard(wire::PendingRequest request) {
  auto* card = new PendingRequestCardState(m_model, std::move(request), m_services.now, this);
  connect(card, &PendingRequestCardState::declined, this, &SessionViewState::declined);
  return card;
}

void SessionViewState::updateSummary() {
  m_plan.setPlan(session() != nullptr ? session()->plan : std::nullopt);
  emit summaryChanged();
}

void SessionViewState::setShowingRename(bool showing) {
  m_showingRename = showing;
  emit renameChanged();
}

QCoro::Task<> SessionViewState::moveToArchive() {
  const QPointer self(this);
  const bool archived = co_await m_model.archive(m_sessionId);
  if (self && archived) emit left();
}

QCoro::Task<> SessionViewState::pin() {
  const QPointer model(&m_model);
  const std::stop_token pairing = model->pairingToken();
  const auto tracked = co_await model->client().track(m_sessionId, !isPinned(), std::nullopt, pairing);
  if (!model || pairing.stop_requested()) co_return;
  if (tracked) {
    co_await model->refresh(true);
  } else {
    model->report(tracked.error());
  }
}

}  // namespace varnel::screens
