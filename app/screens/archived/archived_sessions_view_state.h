// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <functional>

#include "app/lists/record_list_model.h"
#include "app/screens/archived/archived_row.h"
#include "app/screens/session/session_view_state.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// The sheet of archived conversations: filtered on this device, loaded page by page, each restored or read.
class ArchivedSessionsViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY changed)
  Q_PROPERTY(bool empty READ isEmpty NOTIFY changed)
  Q_PROPERTY(bool loading READ isLoading NOTIFY changed)
  Q_PROPERTY(bool hasMore READ hasMore NOTIFY changed)
  Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
  Q_PROPERTY(varnel::screens::SessionViewState* session READ session NOTIFY sessionChanged)

 public:
  /// How an open conversation's state is made.
  using MakeSession = std::function<SessionViewState*(const QString& sessionId, QObject* parent)>;

  ArchivedSessionsViewState(model::AppModel& model, MakeSession makeSession, QObject* parent = nullptr);

  [[nodiscard]] QString search() const { return m_search; }
  void setSearch(const QString& search);
  /// There is none, or none that the text is in.
  [[nodiscard]] bool isEmpty() const;
  /// The first page is awaited and there is nothing yet.
  [[nodiscard]] bool isLoading() const;
  [[nodiscard]] bool hasMore() const;
  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }
  /// The conversation that is read in the sheet, or null.
  [[nodiscard]] SessionViewState* session() { return m_session; }

  /// To be told whenever the sheet is shown.
  Q_INVOKABLE void appeared();
  /// And when it is gone: the next visit begins with the whole list.
  Q_INVOKABLE void disappeared();
  Q_INVOKABLE void loadMore();
  Q_INVOKABLE void unarchive(const QString& sessionId);
  Q_INVOKABLE void open(const QString& sessionId);
  Q_INVOKABLE void close();

 signals:
  void changed();
  void sessionChanged();

 private:
  void updateRows();
  QCoro::Task<> load(bool more);

  model::AppModel& m_model;
  MakeSession m_makeSession;
  QString m_search;
  lists::RecordListModel<ArchivedRow> m_rows;
  QPointer<SessionViewState> m_session;
  int m_loads = 0;  ///< under way
};

}  // namespace varnel::screens
