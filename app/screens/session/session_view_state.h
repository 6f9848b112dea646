// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <string>

#include "app/screens/session/composer_state.h"
#include "app/screens/session/dictation_state.h"
#include "app/screens/session/plan_card_state.h"
#include "app/screens/session/request_cards.h"
#include "app/screens/session/session_services.h"
#include "app/screens/session/session_settings.h"
#include "app/screens/session/transcript_state.h"
#include "core/wire/session.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// One open conversation: its header and what can be done with it as a whole, and the state of each part of its screen.
/// Made when the conversation is opened, which loads it, and gone when it is closed.
class SessionViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString sessionId READ sessionId CONSTANT)
  Q_PROPERTY(QString title READ title NOTIFY summaryChanged)
  Q_PROPERTY(bool working READ isWorking NOTIFY summaryChanged)
  Q_PROPERTY(bool pinned READ isPinned NOTIFY summaryChanged)
  Q_PROPERTY(QString pinSymbol READ pinSymbol NOTIFY summaryChanged)
  Q_PROPERTY(QString pinLabel READ pinLabel NOTIFY summaryChanged)
  Q_PROPERTY(bool archived READ isArchived NOTIFY archivedChanged)
  Q_PROPERTY(varnel::screens::TranscriptState* transcript READ transcript CONSTANT)
  Q_PROPERTY(varnel::screens::SessionSettings* settings READ settings CONSTANT)
  Q_PROPERTY(varnel::screens::ComposerState* composer READ composer CONSTANT)
  Q_PROPERTY(varnel::screens::DictationState* dictation READ dictation CONSTANT)
  Q_PROPERTY(varnel::screens::PlanCardState* plan READ plan CONSTANT)
  Q_PROPERTY(QAbstractItemModel* requests READ requests CONSTANT)
  Q_PROPERTY(int requestCount READ requestCount NOTIFY requestCountChanged)
  Q_PROPERTY(bool showingRename READ isShowingRename NOTIFY renameChanged)
  Q_PROPERTY(QString renameText READ renameText WRITE setRenameText NOTIFY renameChanged)
  Q_PROPERTY(bool renameEnabled READ isRenameEnabled NOTIFY renameChanged)
  Q_PROPERTY(QString linkAddress READ linkAddress NOTIFY linkChanged)
  Q_PROPERTY(bool linkOpens READ linkOpens NOTIFY linkChanged)

 public:
  SessionViewState(model::AppModel& model, const QString& sessionId, QObject* parent = nullptr)
      : SessionViewState(model, sessionId, systemServices(), parent) {}
  SessionViewState(model::AppModel& model, const QString& sessionId, const SessionServices& services,
                   QObject* parent = nullptr);

  [[nodiscard]] QString sessionId() const { return QString::fromStdString(m_sessionId); }
  [[nodiscard]] QString title() const;
  [[nodiscard]] bool isWorking() const;
  [[nodiscard]] bool isPinned() const;
  [[nodiscard]] QString pinSymbol() const;
  [[nodiscard]] QString pinLabel() const;
  [[nodiscard]] bool isArchived() const;
  [[nodiscard]] TranscriptState* transcript() { return &m_transcript; }
  [[nodiscard]] SessionSettings* settings() { return &m_settings; }
  [[nodiscard]] ComposerState* composer() { return &m_composer; }
  [[nodiscard]] DictationState* dictation() { return &m_dictation; }
  [[nodiscard]] PlanCardState* plan() { return &m_plan; }
  /// The unanswered requests, as cards.
  [[nodiscard]] QAbstractItemModel* requests() { return m_requests.rows(); }
  [[nodiscard]] int requestCount() const { return m_requests.count(); }
  [[nodiscard]] bool isShowingRename() const { return m_showingRename; }
  [[nodiscard]] QString renameText() const { return m_renameText; }
  void setRenameText(const QString& text);
  [[nodiscard]] bool isRenameEnabled() const { return !m_renameText.trimmed().isEmpty(); }
  /// Where the link leads that is asked about, with nothing hidden in it; empty when none is.
  [[nodiscard]] QString linkAddress() const;
  /// Web addresses alone are opened.
  [[nodiscard]] bool linkOpens() const;

  Q_INVOKABLE void togglePin();
  Q_INVOKABLE void beginRename();
  Q_INVOKABLE void saveName();
  Q_INVOKABLE void cancelRename();
  Q_INVOKABLE void archive();
  Q_INVOKABLE void unarchive();
  Q_INVOKABLE void askLink(const QString& address);
  Q_INVOKABLE void openLink();
  Q_INVOKABLE void copyLink();
  Q_INVOKABLE void dismissLink();
  Q_INVOKABLE void copyText(const QString& text);
  /// Into the field, in front of what is written.
  Q_INVOKABLE void useAgain(const QString& text);
  /// The command that goes on with this conversation in a terminal of the host.
  Q_INVOKABLE void copyResumeCommand();

 signals:
  void summaryChanged();
  void archivedChanged();
  void requestCountChanged();
  void renameChanged();
  void linkChanged();
  void copied();
  /// It was archived from here, and is in the list no more.
  void left();
  /// A request was declined: there may be a word to say to that.
  void declined();

 private:
  [[nodiscard]] const wire::SessionSummary* session() const;
  [[nodiscard]] PendingRequestCardState* makeCard(wire::PendingRequest request);
  void updateSummary();
  void setShowingRename(bool showing);
  QCoro::Task<> pin();
  QCoro::Task<> moveToArchive();

  model::AppModel& m_model;
  std::string m_sessionId;
  SessionServices m_services;
  TranscriptState m_transcript;  ///< first: its load begins before that of the settings
  SessionSettings m_settings;
  ComposerState m_composer;
  DictationState m_dictation;
  PlanCardState m_plan;
  RequestCards m_requests;
  bool m_showingRename = false;
  QString m_renameText;
  QString m_link;
};

}  // namespace varnel::screens
