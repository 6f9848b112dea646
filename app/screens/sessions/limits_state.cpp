// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/limits_state.h"

#include <QtCore/QStringList>

#include "app/model/app_model.h"

namespace varnel::screens {

LimitsState::LimitsState(model::AppModel& model, QObject* parent) : QObject(parent), m_model(model) {
  connect(&model, &model::AppModel::usageChanged, this, &LimitsState::update);
  connect(&model, &model::AppModel::rateLimitChanged, this, &LimitsState::changed);
  update();
}

bool LimitsState::hasUsage() const {
  return m_model.usage().has_value();
}

bool LimitsState::hasWindow() const {
  return !hasUsage() && m_model.rateLimit();
}

wire::RateLimitWindow LimitsState::window() const {
  return m_model.rateLimit().value_or(wire::RateLimitWindow{});
}

QString LimitsState::title() const {
  return limitTitle(window());
}

QString LimitsState::percentText() const {
  return screens::percentText(window());
}

int LimitsState::percentLeft() const {
  return screens::percentLeft(window());
}

QString LimitsState::tone() const {
  return limitTone(window());
}

QString LimitsState::spoken() const {
  return tr("%1, %2 percent left").arg(title()).arg(percentLeft());
}

QString LimitsState::resetMessage() const {
  return screens::resetMessage(window());
}

QString LimitsState::summary() const {
  QStringList parts;
  for (const LimitRow& row : m_rows.records()) parts << row.spoken;
  return parts.isEmpty() ? tr("Usage") : parts.join(QStringLiteral("; "));
}

void LimitsState::update() {
  m_rows.assign(m_model.usage() ? makeLimitRows(*m_model.usage()) : std::vector<LimitRow>());
  emit changed();
}

}  // namespace varnel::screens
