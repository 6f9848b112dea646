// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

#include "app/screens/pairing/pairing_view_state.h"
#include "app/screens/screen_surroundings.h"
#include "app/screens/settings/app_settings.h"
#include "app/screens/shell/main_tab_view_state.h"

namespace varnel::screens {

/// What the window shows: the pairing screen or the tabs, and the error alert over either. Owns the state of every
/// screen.
class ShellState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool hasError READ hasError NOTIFY errorChanged)
  Q_PROPERTY(QString errorText READ errorText NOTIFY errorChanged)
  Q_PROPERTY(QString windowTitle READ windowTitle NOTIFY windowTitleChanged)
  Q_PROPERTY(varnel::screens::PairingViewState* pairing READ pairing CONSTANT)
  Q_PROPERTY(varnel::screens::MainTabViewState* tabs READ tabs NOTIFY tabsChanged)

 public:
  ShellState(model::AppModel& model, AppSettings& settings, ScreenSurroundings surroundings, QObject* parent = nullptr);

  [[nodiscard]] bool hasError() const;
  [[nodiscard]] QString errorText() const;
  /// The application's name, with the number of conversations that wait for an answer in front of it.
  [[nodiscard]] QString windowTitle() const;
  [[nodiscard]] int needingInput() const;
  [[nodiscard]] PairingViewState* pairing() { return &m_pairing; }
  /// Null while the application is not paired.
  [[nodiscard]] MainTabViewState* tabs() { return m_tabs; }

  Q_INVOKABLE void dismissError();
  /// To be told whenever the window is shown or comes to the front again.
  Q_INVOKABLE void activated();
  /// The window was closed by its own button.
  Q_INVOKABLE void windowClosed();
  Q_INVOKABLE void quit();
  /// A link that the system asks to open.
  void openLink(const QString& url);

 signals:
  void tabsChanged();
  void errorChanged();
  void windowTitleChanged();
  /// The window shall be shown, and come to the front.
  void raised();

 private:
  void followPairing();

  model::AppModel& m_model;
  AppSettings& m_settings;
  ScreenSurroundings m_surroundings;
  PairingViewState m_pairing;
  QPointer<MainTabViewState> m_tabs;
};

}  // namespace varnel::screens
