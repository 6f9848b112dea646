// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <optional>

#include "core/wire/session.h"

namespace varnel::screens {

/// The agent's plan as a checklist: the current step on top, the rest when it is unfolded.
class PlanCardState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool present READ isPresent NOTIFY changed)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString progress READ progress NOTIFY changed)
  Q_PROPERTY(qreal done READ done NOTIFY changed)
  Q_PROPERTY(QString spoken READ spoken NOTIFY changed)
  Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
  Q_PROPERTY(QVariantList steps READ steps NOTIFY changed)
  Q_PROPERTY(bool expanded READ isExpanded WRITE setExpanded NOTIFY expandedChanged)

 public:
  using QObject::QObject;

  void setPlan(std::optional<wire::ConversationPlan> plan);

  [[nodiscard]] bool isPresent() const { return m_plan.has_value(); }
  [[nodiscard]] QString title() const;
  [[nodiscard]] QString progress() const;
  /// 0 to 1.
  [[nodiscard]] qreal done() const;
  [[nodiscard]] QString spoken() const;
  [[nodiscard]] QString explanation() const;
  /// Each a map of text, symbol, tone and status (for those who do not see the symbol).
  [[nodiscard]] QVariantList steps() const;
  [[nodiscard]] bool isExpanded() const { return m_expanded; }
  void setExpanded(bool expanded);

 signals:
  void changed();
  void expandedChanged();

 private:
  [[nodiscard]] int completedCount() const;
  [[nodiscard]] int count() const { return m_plan ? static_cast<int>(m_plan->steps.size()) : 0; }

  std::optional<wire::ConversationPlan> m_plan;
  bool m_expanded = false;
};

}  // namespace varnel::screens
