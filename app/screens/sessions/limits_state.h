// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QString>

#include "app/lists/record_list_model.h"
#include "app/screens/usage/limit_row.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// What the list says of the token limits: the windows of the usage report, else the one window that is known, else
/// that they are awaited.
class LimitsState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool hasUsage READ hasUsage NOTIFY changed)
  Q_PROPERTY(bool hasWindow READ hasWindow NOTIFY changed)
  Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString percentText READ percentText NOTIFY changed)
  Q_PROPERTY(int percentLeft READ percentLeft NOTIFY changed)
  Q_PROPERTY(QString tone READ tone NOTIFY changed)
  Q_PROPERTY(QString spoken READ spoken NOTIFY changed)
  Q_PROPERTY(QString summary READ summary NOTIFY changed)
  Q_PROPERTY(QString resetMessage READ resetMessage NOTIFY changed)

 public:
  explicit LimitsState(model::AppModel& model, QObject* parent = nullptr);

  [[nodiscard]] bool hasUsage() const;
  /// There is no report, but a window.
  [[nodiscard]] bool hasWindow() const;
  /// The windows of the report.
  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }
  // Of the one window.
  [[nodiscard]] QString title() const;
  [[nodiscard]] QString percentText() const;
  [[nodiscard]] int percentLeft() const;
  [[nodiscard]] QString tone() const;
  [[nodiscard]] QString spoken() const;
  [[nodiscard]] QString resetMessage() const;
  /// All windows of the report in words.
  [[nodiscard]] QString summary() const;

 signals:
  void changed();

 private:
  [[nodiscard]] wire::RateLimitWindow window() const;
  void update();

  model::AppModel& m_model;
  lists::RecordListModel<LimitRow> m_rows;
};

}  // namespace varnel::screens
