// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <optional>
#include <string>

#include "core/wire/bodies.h"
#include "core/wire/catalogue.h"
#include "core/wire/session.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// The form that starts a conversation. Choices are told and taken as rows of their pickers; row 0 of the projects and
/// of the models is the one that stands for none.
class NewSessionViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QStringList projects READ projects NOTIFY changed)
  Q_PROPERTY(int project READ project WRITE setProject NOTIFY changed)
  Q_PROPERTY(bool highRisk READ isHighRisk NOTIFY changed)
  Q_PROPERTY(bool acknowledged READ isAcknowledged WRITE setAcknowledged NOTIFY changed)
  Q_PROPERTY(QStringList modes READ modes CONSTANT)
  Q_PROPERTY(int mode READ mode WRITE setMode NOTIFY changed)
  Q_PROPERTY(QStringList models READ models NOTIFY changed)
  Q_PROPERTY(int model READ model WRITE setModel NOTIFY changed)
  Q_PROPERTY(QStringList efforts READ efforts NOTIFY changed)
  Q_PROPERTY(int effort READ effort WRITE setEffort NOTIFY changed)
  Q_PROPERTY(QStringList sandboxes READ sandboxes CONSTANT)
  Q_PROPERTY(int sandbox READ sandbox WRITE setSandbox NOTIFY changed)
  Q_PROPERTY(QStringList approvals READ approvals CONSTANT)
  Q_PROPERTY(int approval READ approval WRITE setApproval NOTIFY changed)
  Q_PROPERTY(bool unsafe READ isUnsafe NOTIFY changed)
  Q_PROPERTY(QString prompt READ prompt WRITE setPrompt NOTIFY promptChanged)
  Q_PROPERTY(bool createEnabled READ isCreateEnabled NOTIFY changed)
  Q_PROPERTY(bool creating READ isCreating NOTIFY changed)
  Q_PROPERTY(bool promptLost READ isPromptLost NOTIFY changed)

 public:
  explicit NewSessionViewState(model::AppModel& model, QObject* parent = nullptr);

  [[nodiscard]] QStringList projects() const;
  [[nodiscard]] int project() const;
  void setProject(int row);
  /// The chosen project needs an acknowledgement.
  [[nodiscard]] bool isHighRisk() const;
  [[nodiscard]] bool isAcknowledged() const { return m_acknowledged; }
  void setAcknowledged(bool acknowledged);
  [[nodiscard]] QStringList modes() const;
  [[nodiscard]] int mode() const;
  void setMode(int row);
  [[nodiscard]] QStringList models() const;
  [[nodiscard]] int model() const;
  void setModel(int row);
  /// Empty when there is nothing to choose.
  [[nodiscard]] QStringList efforts() const;
  [[nodiscard]] int effort() const;
  void setEffort(int row);
  [[nodiscard]] QStringList sandboxes() const;
  [[nodiscard]] int sandbox() const { return m_sandbox; }
  void setSandbox(int row);
  [[nodiscard]] QStringList approvals() const;
  [[nodiscard]] int approval() const { return m_approval; }
  void setApproval(int row);
  /// The chosen sandbox or approvals leave commands less guarded.
  [[nodiscard]] bool isUnsafe() const;
  [[nodiscard]] QString prompt() const { return m_prompt; }
  void setPrompt(const QString& prompt);
  [[nodiscard]] bool isCreateEnabled() const;
  [[nodiscard]] bool isCreating() const { return m_creating; }
  /// A prompt that did not reach the agent can be brought back.
  [[nodiscard]] bool isPromptLost() const { return !m_lostPrompt.isEmpty(); }

  /// To be told whenever the screen is shown.
  Q_INVOKABLE void appeared();
  Q_INVOKABLE void create();
  /// Puts the lost prompt in front of what stands in the field.
  Q_INVOKABLE void restorePrompt();

 signals:
  void changed();
  void promptChanged();

 private:
  void choose(std::optional<wire::ModelOption> model);
  [[nodiscard]] wire::NewSessionBody body() const;
  QCoro::Task<> refreshThenChoose();
  QCoro::Task<> createSession(wire::NewSessionBody body);
  void finish(bool created, const QString& sent);

  model::AppModel& m_model;
  std::optional<wire::ProjectRecord> m_project;
  std::optional<wire::ModelOption> m_chosenModel;
  wire::CodexCollaborationMode m_mode = wire::CodexCollaborationMode::Default;
  std::string m_reasoning;  ///< empty for none chosen
  int m_sandbox;
  int m_approval = 0;
  QString m_prompt;
  QString m_lostPrompt;
  bool m_acknowledged = false;
  bool m_creating = false;
};

}  // namespace varnel::screens
