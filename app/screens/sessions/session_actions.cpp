// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/session_actions.h"

#include <QtCore/QPointer>
#include <chrono>
#include <utility>

#include "app/client/api_client.h"
#include "app/model/app_model.h"

namespace varnel::screens {
namespace {

constexpr std::chrono::seconds kUndoOffered{6};

// Runs to its end though the screen may go.
QCoro::Task<> trackThenRefresh(QPointer<model::AppModel> model, std::string sessionId, bool pinned) {
  const std::stop_token pairing = model->pairingToken();
  const auto tracked = co_await model->client().track(std::move(sessionId), pinned, std::nullopt, pairing);
  if (!model || pairing.stop_requested()) co_return;
  if (!tracked) {
    model->report(tracked.error());
    co_return;
  }
  co_await model->refresh(true);
}

}  // namespace

SessionActions::SessionActions(model::AppModel& model, QObject* parent) : QObject(parent), m_model(model) {
  m_undoOffered.setSingleShot(true);
  m_undoOffered.setInterval(kUndoOffered);
  connect(&m_undoOffered, &QTimer::timeout, this, [this] { setArchived({}); });
}

void SessionActions::pin(const QString& sessionId) {
  const auto* const session = m_model.session(sessionId.toStdString());
  if (session) trackThenRefresh(&m_model, session->id, !session->pinned);
}

void SessionActions::startRename(const QString& sessionId) {
  const auto* const session = m_model.session(sessionId.toStdString());
  if (!session) return;
  m_renameId = session->id;
  m_renameText = QString::fromStdString(session->name.value_or(session->project));
  emit renameChanged();
}

void SessionActions::saveRename(const QString& name) {
  if (!isRenaming()) return;
  m_model.rename(std::exchange(m_renameId, {}), name.toStdString());
  emit renameChanged();
}

void SessionActions::cancelRename() {
  if (!isRenaming()) return;
  m_renameId.clear();
  emit renameChanged();
}

void SessionActions::archive(const QString& sessionId) {
  const auto* const session = m_model.session(sessionId.toStdString());
  if (session && !session->active) archiveThen(session->id);
}

QCoro::Task<> SessionActions::archiveThen(std::string sessionId) {
  const QPointer self(this);
  const bool archived = co_await m_model.archive(sessionId);
  if (self && archived) setArchived(std::move(sessionId));
}

void SessionActions::undoArchive() {
  if (!isUndoShown()) return;
  std::string sessionId = m_archivedId;
  setArchived({});
  m_model.unarchive(std::move(sessionId));
}

void SessionActions::setArchived(std::string sessionId) {
  m_archivedId = std::move(sessionId);
  if (m_archivedId.empty()) {
    m_undoOffered.stop();
  } else {
    m_undoOffered.start();
  }
  emit undoChanged();
}

}  // namespace varnel::screens
