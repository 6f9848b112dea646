// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/sessions_view_state.h"

#include <QtCore/QPointer>
#include <chrono>
#include <utility>
#include <vector>

#include "app/model/app_model.h"
#include "app/ui/host_label.h"
#include "app/ui/relative_time.h"

namespace varnel::screens {
namespace {

constexpr std::chrono::seconds kTimesRefreshed{20};

}  // namespace

SessionsViewState::SessionsViewState(model::AppModel& model, std::function<double()> now, QObject* parent)
    : QObject(parent), m_model(model), m_now(std::move(now)) {
  connect(&model, &model::AppModel::sessionsChanged, this, &SessionsViewState::updateRows);
  connect(&model, &model::AppModel::connectedChanged, this, &SessionsViewState::connectionChanged);
  connect(&model, &model::AppModel::tokenRefusedChanged, this, [this] {
    emit connectionChanged();
    emit rowsChanged();
  });
  connect(&model, &model::AppModel::lastContactChanged, this, &SessionsViewState::connectionChanged);
  connect(&model, &model::AppModel::refreshedChanged, this, &SessionsViewState::rowsChanged);
  connect(&model, &model::AppModel::selectedSessionIdChanged, this, &SessionsViewState::openSelected);
  connect(&model, &model::AppModel::credentialsChanged, this, [this] {
    if (!m_model.isPaired()) close();
  });
  connect(&m_clockTick, &QTimer::timeout, this, [this] {
    updateRows();
    emit connectionChanged();
  });
  m_clockTick.start(kTimesRefreshed);
  updateRows();
}

bool SessionsViewState::isLoading() const {
  return m_model.sessions().empty() && !m_model.isRefreshed() && !m_model.isTokenRefused();
}

bool SessionsViewState::isEmpty() const {
  return m_model.sessions().empty() && !isLoading();
}

bool SessionsViewState::isRefused() const {
  return m_model.isTokenRefused();
}

QString SessionsViewState::connectionText() const {
  if (m_model.isTokenRefused()) return tr("This device is no longer paired");
  return m_model.isConnected() ? tr("Connected to %1").arg(ui::hostLabel()) : tr("Reconnecting…");
}

QString SessionsViewState::connectionTone() const {
  if (m_model.isTokenRefused()) return QStringLiteral("red");
  return m_model.isConnected() ? QStringLiteral("green") : QStringLiteral("orange");
}

QString SessionsViewState::lastContact() const {
  return m_model.lastContact() ? ui::relativeTime(*m_model.lastContact(), m_now()) : QString();
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

void SessionsViewState::forgetPairing() {
  m_model.unpair();
}

void SessionsViewState::updateRows() {
  std::vector<SessionRow> rows;
  rows.reserve(m_model.sessions().size());
  for (const wire::SessionSummary& session : m_model.sessions()) rows.push_back(makeSessionRow(session, m_now()));
  m_rows.assign(std::move(rows));
  emit rowsChanged();
}

void SessionsViewState::openSelected() {
  if (!m_model.selectedSessionId()) return;
  std::string wanted = *m_model.selectedSessionId();
  m_model.selectSession(std::nullopt);
  setOpenId(std::move(wanted));
}

void SessionsViewState::setOpenId(std::string sessionId) {
  if (m_openId == sessionId) return;
  m_openId = std::move(sessionId);
  emit openIdChanged();
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
