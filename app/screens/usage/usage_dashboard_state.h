// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QString>

#include "app/lists/record_list_model.h"
#include "app/screens/usage/limit_row.h"
#include "app/screens/usage/usage_rows.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// The last usage report, as it is shown; asks the bridge for nothing.
class UsageDashboardState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool available READ isAvailable NOTIFY changed)
  Q_PROPERTY(bool hasDays READ hasDays NOTIFY changed)
  Q_PROPERTY(int dayCount READ dayCount NOTIFY changed)
  Q_PROPERTY(bool hasBreakdown READ hasBreakdown NOTIFY changed)
  Q_PROPERTY(QString axisEnd READ axisEnd NOTIFY changed)
  Q_PROPERTY(QString updated READ updated NOTIFY changed)
  Q_PROPERTY(QAbstractItemModel* limits READ limits CONSTANT)
  Q_PROPERTY(QAbstractItemModel* bars READ bars CONSTANT)
  Q_PROPERTY(QAbstractItemModel* ticks READ ticks CONSTANT)
  Q_PROPERTY(QAbstractItemModel* metrics READ metrics CONSTANT)
  Q_PROPERTY(QAbstractItemModel* breakdown READ breakdown CONSTANT)

 public:
  explicit UsageDashboardState(model::AppModel& model, QObject* parent = nullptr);

  [[nodiscard]] bool isAvailable() const;
  [[nodiscard]] bool hasDays() const { return dayCount() > 0; }
  [[nodiscard]] int dayCount() const { return m_bars.rowCount(); }
  [[nodiscard]] bool hasBreakdown() const { return m_breakdown.rowCount() > 0; }
  /// The label at the end of the value axis, the widest of them.
  [[nodiscard]] QString axisEnd() const;
  /// When the report was made.
  [[nodiscard]] QString updated() const;
  [[nodiscard]] QAbstractItemModel* limits() { return &m_limits; }
  [[nodiscard]] QAbstractItemModel* bars() { return &m_bars; }
  [[nodiscard]] QAbstractItemModel* ticks() { return &m_ticks; }
  [[nodiscard]] QAbstractItemModel* metrics() { return &m_metrics; }
  [[nodiscard]] QAbstractItemModel* breakdown() { return &m_breakdown; }

 signals:
  void changed();

 private:
  void update();

  model::AppModel& m_model;
  lists::RecordListModel<LimitRow> m_limits;
  lists::RecordListModel<UsageBar> m_bars;
  lists::RecordListModel<UsageTick> m_ticks;
  lists::RecordListModel<UsageFigure> m_metrics;
  lists::RecordListModel<UsageFigure> m_breakdown;
};

}  // namespace varnel::screens
