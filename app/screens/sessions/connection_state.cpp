// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/connection_state.h"

#include <chrono>
#include <utility>

#include "app/model/app_model.h"
#include "app/ui/date_text.h"
#include "app/ui/host_label.h"
#include "app/ui/relative_time.h"

namespace varnel::screens {
namespace {

constexpr double kSilenceIsSaidAfter = 30;  // seconds
constexpr std::chrono::seconds kLookAgain{10};

}  // namespace

ConnectionState::ConnectionState(model::AppModel& model, std::function<double()> now, QObject* parent)
    : QObject(parent), m_model(model), m_now(std::move(now)), m_madeAt(m_now()) {
  connect(&model, &model::AppModel::connectedChanged, this, &ConnectionState::changed);
  connect(&model, &model::AppModel::tokenRefusedChanged, this, &ConnectionState::changed);
  connect(&model, &model::AppModel::lastContactChanged, this, &ConnectionState::changed);
  connect(&m_tick, &QTimer::timeout, this, &ConnectionState::changed);
  m_tick.start(kLookAgain);
}

QString ConnectionState::text() const {
  return m_model.isConnected() ? tr("Connected to %1").arg(ui::hostLabel()) : tr("Reconnecting…");
}

QString ConnectionState::tone() const {
  return m_model.isConnected() ? QStringLiteral("green") : QStringLiteral("orange");
}

QString ConnectionState::lastContact() const {
  return m_model.lastContact() ? ui::relativeTime(*m_model.lastContact(), m_now()) : QString();
}

QString ConnectionState::notice() const {
  if (m_model.isTokenRefused()) return tr("Revoked: pair again");
  const double since = m_model.lastContact().value_or(m_madeAt);
  if (m_model.isConnected() || m_now() - since < kSilenceIsSaidAfter) return {};
  return tr("Host not reachable since %1").arg(ui::dateText(since, ui::DateForm::ShortTime));
}

bool ConnectionState::isRefused() const {
  return m_model.isTokenRefused();
}

void ConnectionState::reconnect() {
  m_model.stop();
  m_model.start();
}

void ConnectionState::forgetPairing() {
  m_model.unpair();
}

}  // namespace varnel::screens
