// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include "app/screens/screen_surroundings.h"
#include "app/screens/settings/app_settings.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// What the settings tab says of the connection and of this build, and what it changes.
class SettingsViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString host READ host NOTIFY changed)
  Q_PROPERTY(QString status READ status NOTIFY changed)
  Q_PROPERTY(QString lastContact READ lastContact NOTIFY changed)
  Q_PROPERTY(QString activitiesAllowed READ activitiesAllowed NOTIFY changed)
  Q_PROPERTY(QString bridgeContract READ bridgeContract NOTIFY changed)
  Q_PROPERTY(bool notifyNeedsInput READ notifiesNeedsInput WRITE setNotifyNeedsInput NOTIFY changed)
  Q_PROPERTY(bool notifyFailed READ notifiesFailed WRITE setNotifyFailed NOTIFY changed)
  Q_PROPERTY(bool notifyDone READ notifiesDone WRITE setNotifyDone NOTIFY changed)
  Q_PROPERTY(bool notifyUsageReset READ notifiesUsageReset WRITE setNotifyUsageReset NOTIFY changed)
  Q_PROPERTY(bool keepRunning READ keepsRunning WRITE setKeepRunning NOTIFY changed)
  Q_PROPERTY(QStringList appearances READ appearances CONSTANT)
  Q_PROPERTY(int appearance READ appearance WRITE setAppearance NOTIFY changed)
  Q_PROPERTY(QStringList languages READ languages CONSTANT)
  Q_PROPERTY(int language READ language WRITE setLanguage NOTIFY changed)

 public:
  SettingsViewState(model::AppModel& model, AppSettings& settings, ScreenSurroundings surroundings,
                    QObject* parent = nullptr);

  [[nodiscard]] QString host() const;
  [[nodiscard]] QString status() const;
  /// Empty before the first contact.
  [[nodiscard]] QString lastContact() const;
  [[nodiscard]] QString activitiesAllowed() const;
  /// What the bridge speaks when it is not what this application speaks; else empty.
  [[nodiscard]] QString bridgeContract() const;

  [[nodiscard]] bool notifiesNeedsInput() const { return m_settings.isOn(AppSettings::kNotifyNeedsInput); }
  void setNotifyNeedsInput(bool on) { m_settings.setOn(AppSettings::kNotifyNeedsInput, on); }
  [[nodiscard]] bool notifiesFailed() const { return m_settings.isOn(AppSettings::kNotifyFailed); }
  void setNotifyFailed(bool on) { m_settings.setOn(AppSettings::kNotifyFailed, on); }
  [[nodiscard]] bool notifiesDone() const { return m_settings.isOn(AppSettings::kNotifyDone); }
  void setNotifyDone(bool on) { m_settings.setOn(AppSettings::kNotifyDone, on); }
  [[nodiscard]] bool notifiesUsageReset() const { return m_settings.isOn(AppSettings::kNotifyUsageReset); }
  void setNotifyUsageReset(bool on) { m_settings.setOn(AppSettings::kNotifyUsageReset, on); }
  [[nodiscard]] bool keepsRunning() const { return m_settings.isOn(AppSettings::kKeepRunning); }
  void setKeepRunning(bool on) { m_settings.setOn(AppSettings::kKeepRunning, on); }
  [[nodiscard]] QStringList appearances() const;
  [[nodiscard]] int appearance() const;
  void setAppearance(int row);
  [[nodiscard]] QStringList languages() const;
  [[nodiscard]] int language() const;
  void setLanguage(int row);

  Q_INVOKABLE void clearActivity();
  Q_INVOKABLE void forgetHost();
  Q_INVOKABLE void quit();

 signals:
  void changed();

 private:
  model::AppModel& m_model;
  AppSettings& m_settings;
  ScreenSurroundings m_surroundings;
  QTimer m_clockTick;  ///< the last contact grows old without any event
};

}  // namespace varnel::screens
