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
#include <string>

#include "app/lists/record_list_model.h"
#include "app/screens/screen_surroundings.h"
#include "app/screens/sessions/connection_state.h"
#include "app/screens/sessions/conversation_search.h"
#include "app/screens/sessions/limits_state.h"
#include "app/screens/sessions/seen_conversations.h"
#include "app/screens/sessions/session_actions.h"
#include "app/screens/sessions/session_row.h"

namespace varnel::screens {

/// The list of conversations, with the connection and the limits on top, and which conversation is open.
class SessionsViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
  Q_PROPERTY(bool empty READ isEmpty NOTIFY rowsChanged)
  Q_PROPERTY(bool loading READ isLoading NOTIFY rowsChanged)
  Q_PROPERTY(bool saved READ isSaved NOTIFY rowsChanged)
  Q_PROPERTY(bool refreshing READ isRefreshing NOTIFY refreshingChanged)
  Q_PROPERTY(QString openId READ openId NOTIFY openIdChanged)
  Q_PROPERTY(bool showingArchived READ isShowingArchived WRITE setShowingArchived NOTIFY sheetsChanged)
  Q_PROPERTY(bool showingUsage READ isShowingUsage WRITE setShowingUsage NOTIFY sheetsChanged)
  Q_PROPERTY(varnel::screens::ConnectionState* connection READ connection CONSTANT)
  Q_PROPERTY(varnel::screens::LimitsState* limits READ limits CONSTANT)
  Q_PROPERTY(varnel::screens::ConversationSearch* search READ search CONSTANT)
  Q_PROPERTY(varnel::screens::SessionActions* actions READ actions CONSTANT)

 public:
  SessionsViewState(model::AppModel& model, const ScreenSurroundings& surroundings, QObject* parent = nullptr);

  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }
  /// There is none to show and none to wait for.
  [[nodiscard]] bool isEmpty() const;
  /// There is none yet, and the first refresh of this pairing is still to end.
  [[nodiscard]] bool isLoading() const;
  /// What is shown is the copy of an earlier run.
  [[nodiscard]] bool isSaved() const { return m_saved; }
  [[nodiscard]] bool isRefreshing() const { return m_refreshing; }
  /// The conversation that is open, empty when none is.
  [[nodiscard]] QString openId() const { return QString::fromStdString(m_openId); }
  [[nodiscard]] bool isShowingArchived() const { return m_showingArchived; }
  void setShowingArchived(bool showing);
  [[nodiscard]] bool isShowingUsage() const { return m_showingUsage; }
  void setShowingUsage(bool showing);
  [[nodiscard]] ConnectionState* connection() { return &m_connection; }
  [[nodiscard]] LimitsState* limits() { return &m_limits; }
  [[nodiscard]] ConversationSearch* search() { return &m_search; }
  [[nodiscard]] SessionActions* actions() { return &m_actions; }

  Q_INVOKABLE void open(const QString& sessionId);
  Q_INVOKABLE void close();
  Q_INVOKABLE void refresh();
  /// Opens the conversation that many rows below the open one, or the first; above it for a negative number.
  Q_INVOKABLE void openNeighbour(int distance);
  /// Opens the first conversation after the open one that waits for an answer, beginning anew at the end.
  Q_INVOKABLE void openNextNeedingInput();

 signals:
  void rowsChanged();
  void refreshingChanged();
  void openIdChanged();
  void sheetsChanged();
  /// A conversation was asked for from elsewhere: by a link, a notification, or a creation.
  void broughtForward();

 private:
  void updateRows();
  void openSelected();
  void setOpenId(std::string sessionId);
  [[nodiscard]] int openRow() const;
  QCoro::Task<> refreshAll();

  model::AppModel& m_model;
  ScreenSurroundings m_surroundings;
  SeenConversations m_seen;
  ConnectionState m_connection;
  LimitsState m_limits;
  ConversationSearch m_search;
  SessionActions m_actions;
  lists::RecordListModel<SessionRow> m_rows;
  QTimer m_clockTick;  ///< relative times grow old without any event
  std::string m_openId;
  bool m_saved = false;
  bool m_refreshing = false;
  bool m_showingArchived = false;
  bool m_showingUsage = false;
};

}  // namespace varnel::screens
