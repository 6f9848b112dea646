// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/plan_card_state.h"

#include <algorithm>
#include <utility>

namespace varnel::screens {
namespace {

using Step = wire::ConversationPlanStep;

QVariantMap shown(const Step& step) {
  const auto row = [&](const QString& symbol, const QString& tone, const QString& status) {
    return QVariantMap{{QStringLiteral("text"), QString::fromStdString(step.step)},
                       {QStringLiteral("symbol"), symbol},
                       {QStringLiteral("tone"), tone},
                       {QStringLiteral("status"), status}};
  };
  if (step.status == "completed") {
    return row(QStringLiteral("checkmark.circle.fill"), QStringLiteral("green"), PlanCardState::tr("Completed"));
  }
  if (step.status == "inProgress") {
    return row(QStringLiteral("circle.dotted"), QStringLiteral("blue"), PlanCardState::tr("In progress"));
  }
  return row(QStringLiteral("circle"), QStringLiteral("secondary"), PlanCardState::tr("Pending"));
}

}  // namespace

void PlanCardState::setPlan(std::optional<wire::ConversationPlan> plan) {
  if (m_plan == plan) return;
  m_plan = std::move(plan);
  emit changed();
}

QString PlanCardState::title() const {
  if (!m_plan) return {};
  if (m_plan->completed) return tr("Plan complete");
  const auto current = std::ranges::find(m_plan->steps, "inProgress", &Step::status);
  return current == m_plan->steps.end() ? tr("Plan") : QString::fromStdString(current->step);
}

QString PlanCardState::progress() const {
  return QStringLiteral("%1/%2").arg(completedCount()).arg(count());
}

qreal PlanCardState::done() const {
  return count() == 0 ? 0 : static_cast<qreal>(completedCount()) / count();
}

QString PlanCardState::spoken() const {
  return tr("Plan, %1 of %2 steps complete").arg(completedCount()).arg(count());
}

QString PlanCardState::explanation() const {
  return m_plan ? QString::fromStdString(m_plan->explanation.value_or("")) : QString();
}

QVariantList PlanCardState::steps() const {
  QVariantList result;
  if (m_plan) std::ranges::transform(m_plan->steps, std::back_inserter(result), shown);
  return result;
}

void PlanCardState::setExpanded(bool expanded) {
  if (m_expanded == expanded) return;
  m_expanded = expanded;
  emit expandedChanged();
}

int PlanCardState::completedCount() const {
  return m_plan ? static_cast<int>(std::ranges::count(m_plan->steps, "completed", &Step::status)) : 0;
}

}  // namespace varnel::screens
