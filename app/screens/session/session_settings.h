// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtCore/QVariant>
#include <chrono>
#include <optional>
#include <stop_token>
#include <string>

#include "core/wire/catalogue.h"
#include "core/wire/session.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// What the turns of the open conversation go with: model, effort, mode and tier, as the settings menu offers them.
/// Changes reach the bridge a quarter of a second after the last of them, all in one request; those that have not gone
/// when the conversation is closed are dropped.
class SessionSettings : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString modelLabel READ modelLabel NOTIFY changed)
  Q_PROPERTY(QVariantList models READ models NOTIFY changed)
  Q_PROPERTY(QString thinkingLabel READ thinkingLabel NOTIFY changed)
  Q_PROPERTY(QVariantList efforts READ efforts NOTIFY changed)
  Q_PROPERTY(QString modeLabel READ modeLabel NOTIFY changed)
  Q_PROPERTY(QVariantList modes READ modes NOTIFY changed)
  Q_PROPERTY(bool fastMode READ isFastMode WRITE setFastMode NOTIFY changed)
  Q_PROPERTY(bool fastEnabled READ isFastEnabled NOTIFY changed)
  Q_PROPERTY(bool hasUsage READ hasUsage NOTIFY changed)
  Q_PROPERTY(QString tokensText READ tokensText NOTIFY changed)
  Q_PROPERTY(QString usedText READ usedText NOTIFY changed)
  Q_PROPERTY(QString contextLabel READ contextLabel NOTIFY changed)

 public:
  static constexpr std::chrono::milliseconds kDebounce{250};

  SessionSettings(model::AppModel& model, std::string sessionId, QObject* parent);
  ~SessionSettings() override;

  [[nodiscard]] bool isReady() const { return m_controlsReady; }
  /// Nothing while no model or no effort is chosen.
  [[nodiscard]] std::optional<wire::ConversationPreferences> preferences() const;
  [[nodiscard]] bool isGoalMode() const { return m_goalMode; }
  void setGoalMode(bool goal);

  [[nodiscard]] QString modelLabel() const;
  /// Each a map of id, label and checked; so are the others.
  [[nodiscard]] QVariantList models() const;
  [[nodiscard]] QString thinkingLabel() const;
  [[nodiscard]] QVariantList efforts() const;
  [[nodiscard]] QString modeLabel() const;
  /// With a symbol each.
  [[nodiscard]] QVariantList modes() const;
  [[nodiscard]] bool isFastMode() const { return m_choice.fastMode; }
  [[nodiscard]] bool isFastEnabled() const;
  [[nodiscard]] bool hasUsage() const;
  [[nodiscard]] QString tokensText() const;
  [[nodiscard]] QString usedText() const;
  [[nodiscard]] QString contextLabel() const;

  Q_INVOKABLE void chooseModel(const QString& id);
  Q_INVOKABLE void chooseEffort(const QString& effort);
  /// "live", "plan" or "goal".
  Q_INVOKABLE void chooseMode(const QString& mode);
  void setFastMode(bool fast);

 signals:
  void changed();
  void goalModeChanged();
  /// What was chosen before is known: messages can be sent.
  void ready();

 private:
  struct Choice {
    wire::CodexCollaborationMode mode = wire::CodexCollaborationMode::Default;
    std::string selectedModelId;
    std::string reasoning;
    bool fastMode = false;
    bool operator==(const Choice&) const = default;
  };

  [[nodiscard]] const wire::ModelOption* model(const std::string& id) const;
  [[nodiscard]] const wire::ModelOption* selectedModel() const { return model(m_choice.selectedModelId); }
  [[nodiscard]] std::optional<wire::ConversationTokenUsage> usage() const;
  QCoro::Task<> load();
  void takeStored();
  /// Of what has changed the bridge is told.
  void choose(Choice choice);
  void tellLater();
  void queueSettingsUpdate();
  QCoro::Task<> updateSettings();

  model::AppModel& m_model;
  std::string m_sessionId;
  Choice m_choice;
  bool m_goalMode = false;
  bool m_controlsReady = false;
  QTimer m_debounce;
  std::stop_source m_settingsTask;  ///< of the update that is on its way
};

}  // namespace varnel::screens
