// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <optional>
#include <string>

#include "app/lists/record_list_model.h"
#include "app/screens/session/transcript_row.h"
#include "core/wire/session.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// One open conversation: what was said, what the agent waits for, and the composer. Made when the conversation is
/// opened, which loads it, and gone when it is closed.
class SessionViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString sessionId READ sessionId CONSTANT)
  Q_PROPERTY(QString title READ title NOTIFY summaryChanged)
  Q_PROPERTY(bool working READ isWorking NOTIFY summaryChanged)
  Q_PROPERTY(bool loading READ isLoading NOTIFY transcriptChanged)
  Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
  Q_PROPERTY(QAbstractItemModel* notices READ notices CONSTANT)
  Q_PROPERTY(QString message READ message WRITE setMessage NOTIFY messageChanged)
  Q_PROPERTY(bool busy READ isBusy NOTIFY composerChanged)
  Q_PROPERTY(bool sendEnabled READ isSendEnabled NOTIFY composerChanged)
  Q_PROPERTY(QString sendLabel READ sendLabel NOTIFY composerChanged)
  Q_PROPERTY(QString sendSymbol READ sendSymbol NOTIFY composerChanged)

 public:
  SessionViewState(model::AppModel& model, const QString& sessionId, QObject* parent = nullptr);

  [[nodiscard]] QString sessionId() const { return QString::fromStdString(m_sessionId); }
  [[nodiscard]] QString title() const;
  [[nodiscard]] bool isWorking() const;
  /// Nothing of the conversation is here yet and it is being fetched.
  [[nodiscard]] bool isLoading() const;
  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }
  [[nodiscard]] QAbstractItemModel* notices() { return &m_notices; }
  [[nodiscard]] QString message() const { return m_message; }
  void setMessage(const QString& message);
  [[nodiscard]] bool isBusy() const { return m_sending || m_stopping; }
  [[nodiscard]] bool isSendEnabled() const;
  [[nodiscard]] QString sendLabel() const;
  [[nodiscard]] QString sendSymbol() const;

  /// Sends the message, or stops the task while one runs. The text comes back when the bridge did not take it.
  Q_INVOKABLE void sendOrStop();
  /// Sends the message and never stops anything; for the keyboard, where one shortcut must not do two things.
  Q_INVOKABLE void send();

 signals:
  void summaryChanged();
  void transcriptChanged();
  void messageChanged();
  void composerChanged();

 private:
  [[nodiscard]] const wire::SessionSummary* session() const;
  [[nodiscard]] bool isActive() const;
  /// What the next message is sent with; nothing before the controls are ready and while no model is known.
  [[nodiscard]] std::optional<wire::ConversationPreferences> preferences() const;
  void updateRows();
  void updateNotices();
  QCoro::Task<> loadControls();
  QCoro::Task<> sendText(QString text);
  QCoro::Task<> stopTask();

  model::AppModel& m_model;
  std::string m_sessionId;
  lists::RecordListModel<TranscriptRow> m_rows;
  lists::RecordListModel<RequestNotice> m_notices;
  QString m_message;
  bool m_sending = false;
  bool m_stopping = false;
  bool m_controlsReady = false;  ///< what is chosen for this conversation may be read
};

}  // namespace varnel::screens
