// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/usage/usage_dashboard_state.h"

#include "app/model/app_model.h"
#include "app/ui/date_text.h"

namespace varnel::screens {

UsageDashboardState::UsageDashboardState(model::AppModel& model, QObject* parent) : QObject(parent), m_model(model) {
  connect(&model, &model::AppModel::usageChanged, this, &UsageDashboardState::update);
  update();
}

bool UsageDashboardState::isAvailable() const {
  return m_model.usage().has_value();
}

QString UsageDashboardState::updated() const {
  if (!m_model.usage()) return {};
  return tr("Updated %1").arg(ui::dateText(m_model.usage()->fetchedAt, ui::DateForm::MediumDateAndTime));
}

QString UsageDashboardState::axisEnd() const {
  return m_ticks.records().empty() ? QString() : m_ticks.records().back().label;
}

void UsageDashboardState::update() {
  const wire::UsageEnvelope usage = m_model.usage().value_or(wire::UsageEnvelope{});
  m_limits.assign(makeLimitRows(usage));
  m_bars.assign(makeUsageBars(usage.dailyUsageBuckets));
  m_ticks.assign(makeUsageTicks(usage.dailyUsageBuckets));
  m_metrics.assign(makeUsageMetrics(usage.summary));
  m_breakdown.assign(makeUsageBreakdown(usage.threadUsage.value_or(wire::ThreadUsageSummary{})));
  emit changed();
}

}  // namespace varnel::screens
