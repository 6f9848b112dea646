// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtMultimedia/QVideoSink>
#include <functional>
#include <memory>

#include "app/screens/screen_surroundings.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// The screen shown while the application is not paired: how to get a code, and the sheet that takes it.
class PairingViewState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool scanning READ isScanning NOTIFY changed)
  Q_PROPERTY(bool pairing READ isPairing NOTIFY changed)
  Q_PROPERTY(QString pasteNotice READ pasteNotice NOTIFY changed)
  Q_PROPERTY(QString instruction READ instruction CONSTANT)
  Q_PROPERTY(QString instructionMarkup READ instructionMarkup CONSTANT)
  Q_PROPERTY(QString cameraNotice READ cameraNotice NOTIFY changed)
  Q_PROPERTY(QVideoSink* preview READ preview WRITE setPreview NOTIFY previewChanged)

 public:
  /// Hands a code to the application model and runs `done` when the claim has ended, well or not.
  using Pair = std::function<void(const QString& code, std::function<void()> done)>;

  PairingViewState(Pair pair, ScreenSurroundings surroundings, QObject* parent = nullptr);

  /// The sheet is shown.
  [[nodiscard]] bool isScanning() const { return m_scanning; }
  /// A code has been taken and the host has not answered yet.
  [[nodiscard]] bool isPairing() const { return m_pairing; }
  /// Why the last paste or picture gave nothing; empty when there is nothing to say.
  [[nodiscard]] QString pasteNotice() const { return m_pasteNotice; }
  [[nodiscard]] QString instruction() const;
  /// The instruction with the command set as code; made of our own texts only.
  [[nodiscard]] QString instructionMarkup() const;
  /// Why there is nothing to see; empty while a camera looks.
  [[nodiscard]] QString cameraNotice() const;
  /// Where the camera shows what it sees.
  [[nodiscard]] QVideoSink* preview() const { return m_preview; }
  void setPreview(QVideoSink* preview);

  Q_INVOKABLE void startScanning();
  Q_INVOKABLE void stopScanning();
  Q_INVOKABLE void pasteCode();
  /// Reads the code in a picture of it, a file on this device.
  Q_INVOKABLE void openImage(const QUrl& file);
  /// Closes the sheet, then pairs. A blank code does nothing.
  Q_INVOKABLE void useCode(const QString& code);

 signals:
  void changed();
  void previewChanged();

 private:
  void followCamera();
  void say(const QString& notice);
  QCoro::Task<> readImage(QString path);

  Pair m_pair;
  ScreenSurroundings m_surroundings;
  std::unique_ptr<platform::Camera> m_camera;  ///< while the sheet is shown
  QPointer<QVideoSink> m_preview;
  bool m_scanning = false;
  bool m_pairing = false;
  QString m_pasteNotice;
};

/// The model's own way to pair.
PairingViewState::Pair pairWith(model::AppModel& model);

}  // namespace varnel::screens
