// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <string>

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// What can be done to a conversation from the list: pin, rename, archive and, for a while, take the last back.
class SessionActions : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool renaming READ isRenaming NOTIFY renameChanged)
  Q_PROPERTY(QString renameText READ renameText NOTIFY renameChanged)
  Q_PROPERTY(bool undoShown READ isUndoShown NOTIFY undoChanged)

 public:
  explicit SessionActions(model::AppModel& model, QObject* parent = nullptr);

  /// The rename dialog is up.
  [[nodiscard]] bool isRenaming() const { return !m_renameId.empty(); }
  /// What the dialog's field begins with.
  [[nodiscard]] QString renameText() const { return m_renameText; }
  [[nodiscard]] bool isUndoShown() const { return !m_archivedId.empty(); }

  /// Pins, or unpins what is pinned.
  Q_INVOKABLE void pin(const QString& sessionId);
  Q_INVOKABLE void startRename(const QString& sessionId);
  Q_INVOKABLE void saveRename(const QString& name);
  Q_INVOKABLE void cancelRename();
  Q_INVOKABLE void archive(const QString& sessionId);
  Q_INVOKABLE void undoArchive();

 signals:
  void renameChanged();
  void undoChanged();

 private:
  void setArchived(std::string sessionId);
  QCoro::Task<> archiveThen(std::string sessionId);

  model::AppModel& m_model;
  std::string m_renameId;
  QString m_renameText;
  std::string m_archivedId;  ///< what "Undo" brings back; empty when it is not offered
  QTimer m_undoOffered;
};

}  // namespace varnel::screens
