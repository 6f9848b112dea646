// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QString>

#include "app/lists/record_list_model.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// A conversation that the quick switcher offers.
struct SwitcherRow {
  QString sessionId;
  QString title;   ///< project, and the name where it says more
  QString symbol;  ///< of its state
  QString tone;
  QString spoken;

  [[nodiscard]] const QString& identity() const { return sessionId; }
  bool operator==(const SwitcherRow&) const = default;
};

/// Finds a conversation among the listed ones by a few letters of its project, its name or its directory.
class QuickSwitcherState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed)
  Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)

 public:
  explicit QuickSwitcherState(model::AppModel& model, QObject* parent = nullptr);

  [[nodiscard]] QString text() const { return m_text; }
  void setText(const QString& text);
  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }
  /// Opens the conversation of that row; nothing for a row that is none.
  Q_INVOKABLE void choose(int row);

 signals:
  void changed();
  void chosen(const QString& sessionId);

 private:
  void updateRows();

  model::AppModel& m_model;
  QString m_text;
  lists::RecordListModel<SwitcherRow> m_rows;
};

}  // namespace varnel::screens
