// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/lists/record_list_model.h"
#include "app/screens/sessions/session_row.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// The list of conversations with the connection on top, and which conversation is open.
class SessionsViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
  Q_PROPERTY(bool empty READ isEmpty NOTIFY rowsChanged)
  Q_PROPERTY(bool loading READ isLoading NOTIFY rowsChanged)
  Q_PROPERTY(bool refreshing READ isRefreshing NOTIFY refreshingChanged)
  Q_PROPERTY(QString connectionText READ connectionText NOTIFY connectionChanged)
  Q_PROPERTY(QString connectionTone READ connectionTone NOTIFY connectionChanged)
  Q_PROPERTY(QString lastContact READ lastContact NOTIFY connectionChanged)
  Q_PROPERTY(bool refused READ isRefused NOTIFY connectionChanged)
  Q_PROPERTY(QString openId READ openId NOTIFY openIdChanged)

 public:
  /// `now` gives seconds since 1970.
  SessionsViewState(model::AppModel& model, std::function<double()> now, QObject* parent = nullptr);

  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }
  /// There is none to show and none to wait for.
  [[nodiscard]] bool isEmpty() const;
  /// There is none yet, and the first refresh of this pairing is still to end.
  [[nodiscard]] bool isLoading() const;
  [[nodiscard]] bool isRefreshing() const { return m_refreshing; }
  [[nodiscard]] QString connectionText() const;
  [[nodiscard]] QString connectionTone() const;
  [[nodiscard]] QString lastContact() const;
  /// The bridge no longer knows this device; only a new pairing helps.
  [[nodiscard]] bool isRefused() const;
  /// The conversation that is open, empty when none is.
  [[nodiscard]] QString openId() const { return QString::fromStdString(m_openId); }

  Q_INVOKABLE void open(const QString& sessionId);
  Q_INVOKABLE void close();
  Q_INVOKABLE void refresh();
  Q_INVOKABLE void forgetPairing();

 signals:
  void rowsChanged();
  void refreshingChanged();
  void connectionChanged();
  void openIdChanged();

 private:
  void updateRows();
  void openSelected();
  void setOpenId(std::string sessionId);
  QCoro::Task<> refreshAll();

  model::AppModel& m_model;
  std::function<double()> m_now;
  lists::RecordListModel<SessionRow> m_rows;
  QTimer m_clockTick;  ///< relative times grow old without any event
  std::string m_openId;
  bool m_refreshing = false;
};

}  // namespace varnel::screens
