// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <chrono>
#include <string>
#include <vector>

#include "app/device/draft_store.h"
#include "app/lists/record_list_model.h"
#include "app/screens/session/composer_rows.h"
#include "app/screens/session/session_services.h"
#include "core/wire/queue.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

class SessionSettings;

/// What is written and attached and not sent yet, and the button that sends it or stops the task. What the bridge did
/// not take comes back; what stands here is a draft that outlives the conversation's screen and the program.
class ComposerState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString message READ message WRITE setMessage NOTIFY messageChanged)
  Q_PROPERTY(QString preedit READ preedit WRITE setPreedit NOTIFY changed)
  Q_PROPERTY(QAbstractItemModel* attachments READ attachments CONSTANT)
  Q_PROPERTY(QAbstractItemModel* queue READ queue CONSTANT)
  Q_PROPERTY(bool uploading READ isUploading NOTIFY changed)
  Q_PROPERTY(QString uploadProgress READ uploadProgress NOTIFY changed)
  Q_PROPERTY(bool active READ isActive NOTIFY changed)
  Q_PROPERTY(bool busy READ isBusy NOTIFY changed)
  Q_PROPERTY(bool sendEnabled READ isSendEnabled NOTIFY changed)
  Q_PROPERTY(QString sendLabel READ sendLabel NOTIFY changed)
  Q_PROPERTY(QString sendSymbol READ sendSymbol NOTIFY changed)
  Q_PROPERTY(bool canQueue READ canQueue NOTIFY changed)

 public:
  static constexpr int kItemsInPick = 10;
  static constexpr std::chrono::milliseconds kDraftDelay{300};

  ComposerState(model::AppModel& model, std::string sessionId, SessionSettings& settings, SessionServices services,
                QObject* parent);
  ~ComposerState() override;

  [[nodiscard]] QString message() const { return m_message; }
  void setMessage(const QString& message);
  /// Text that the input method has not handed over yet; it counts, and is taken before anything is sent.
  [[nodiscard]] QString preedit() const { return m_preedit; }
  void setPreedit(const QString& preedit);
  [[nodiscard]] QAbstractItemModel* attachments() { return &m_attachmentRows; }
  /// What the bridge will send once the running turn has ended.
  [[nodiscard]] QAbstractItemModel* queue() { return &m_queueRows; }
  [[nodiscard]] bool isUploading() const { return m_uploadsInProgress > 0; }
  [[nodiscard]] QString uploadProgress() const { return m_uploadProgress; }
  [[nodiscard]] bool isActive() const;
  [[nodiscard]] bool isBusy() const { return m_sending || m_stopping; }
  [[nodiscard]] bool isSendEnabled() const;
  [[nodiscard]] QString sendLabel() const;
  [[nodiscard]] QString sendSymbol() const;
  /// A turn runs, something is written, and the bridge keeps a queue.
  [[nodiscard]] bool canQueue() const;

  /// Sends, or stops the task while one runs.
  Q_INVOKABLE void sendOrStop();
  // Each does one of the two and never the other; for the keyboard.
  Q_INVOKABLE void send();
  Q_INVOKABLE void stop();
  Q_INVOKABLE void sendWhenDone();
  /// Takes a queued message back into the field.
  Q_INVOKABLE void editQueued(const QString& id);
  Q_INVOKABLE void cancelQueued(const QString& id);
  /// Of more than a pick may hold the first are taken.
  Q_INVOKABLE void attachFiles(const QList<QUrl>& files);
  /// True when the clipboard holds images or videos, which are attached then; text is left to the field.
  Q_INVOKABLE bool paste();
  Q_INVOKABLE void removeAttachment(const QString& id);
  /// Behind what is written: with one blank between unless there is white space.
  Q_INVOKABLE void append(const QString& text);
  /// In front of what is written, on lines of its own.
  void putInFront(const QString& text);
  /// Writes the draft now, as when the application is left.
  Q_INVOKABLE void saveDraft();

 signals:
  void messageChanged();
  void changed();

 private:
  using Attachments = std::vector<wire::UploadedAttachment>;

  [[nodiscard]] bool hasContent() const;
  /// What is written, taken out of the field.
  struct Outgoing {
    QString text;
    Attachments attachments;
    bool goal = false;
  };
  Outgoing takeOutgoing();
  void giveBack(const Outgoing& outgoing);
  void setAttachments(Attachments attachments);
  void setUploads(int count, const QString& progress);
  void contentChanged();
  [[nodiscard]] device::Draft draft() const;
  void restoreDraft();
  void updateQueue();
  void upload(std::vector<MediaSource> picks);
  QCoro::Task<> uploadAll(std::vector<MediaSource> picks);
  QCoro::Task<> sendMessage();
  QCoro::Task<> queueMessage();
  QCoro::Task<> takeBack(std::string id, bool edit);
  QCoro::Task<> interrupt();

  model::AppModel& m_model;
  std::string m_sessionId;
  SessionSettings& m_settings;
  SessionServices m_services;
  QString m_message;
  QString m_preedit;
  Attachments m_attachments;
  Outgoing m_outgoing;  ///< on its way; part of the draft until the bridge has it
  lists::RecordListModel<AttachmentRow> m_attachmentRows;
  lists::RecordListModel<QueuedRow> m_queueRows;
  int m_uploadsInProgress = 0;
  QString m_uploadProgress;
  bool m_sending = false;
  bool m_stopping = false;
  bool m_restored = false;  ///< the stored draft is in the field, so that what is there may replace it
  QTimer m_draftTimer;
};

}  // namespace varnel::screens
