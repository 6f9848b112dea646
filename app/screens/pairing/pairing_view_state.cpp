// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/pairing/pairing_view_state.h"

#include <QtCore/QPointer>
#include <QtGui/QImageReader>
#include <optional>
#include <utility>

#include "app/client/async.h"
#include "app/model/app_model.h"
#include "app/platform/code_scanner.h"
#include "app/ui/host_label.h"

namespace varnel::screens {
namespace {

QCoro::Task<> pairThen(model::AppModel* model, QString code, std::function<void()> done) {
  co_await model->pair(code);
  done();
}

std::optional<QString> codeInFile(const QString& path) {
  QImageReader reader(path);
  reader.setAutoTransform(true);
  return platform::readQrCode(reader.read());
}

}  // namespace

PairingViewState::PairingViewState(Pair pair, ScreenSurroundings surroundings, QObject* parent)
    : QObject(parent), m_pair(std::move(pair)), m_surroundings(std::move(surroundings)) {}

QString PairingViewState::instruction() const {
  return tr("Run varnel pair on %1, then scan the one-time code.").arg(ui::hostLabel());
}

QString PairingViewState::instructionMarkup() const {
  return tr("Run <code>varnel pair</code> on %1, then scan the one-time code.").arg(ui::hostLabel());
}

QString PairingViewState::cameraNotice() const {
  if (m_camera && m_camera->isAvailable()) return {};
  return tr("No camera is available. Copy the code that varnel pair prints on %1 and paste it here.")
      .arg(ui::hostLabel());
}

void PairingViewState::startScanning() {
  m_scanning = true;
  m_pasteNotice.clear();
  m_camera = m_surroundings.makeCamera();
  if (m_camera) {
    connect(m_camera.get(), &platform::Camera::availableChanged, this, &PairingViewState::followCamera);
    // Queued: the first code ends the camera that tells of it.
    connect(m_camera.get(), &platform::Camera::codeSeen, this, &PairingViewState::useCode, Qt::QueuedConnection);
  }
  emit changed();
  followCamera();
}

void PairingViewState::stopScanning() {
  if (!m_scanning) return;
  m_scanning = false;
  m_camera.reset();
  emit changed();
}

void PairingViewState::setPreview(QVideoSink* preview) {
  if (preview == m_preview) return;
  m_preview = preview;
  emit previewChanged();
  followCamera();
}

void PairingViewState::followCamera() {
  if (!m_camera) return;
  m_camera->stop();
  m_camera->start(m_preview);
  emit changed();
}

void PairingViewState::pasteCode() {
  const QString code = m_surroundings.clipboard();
  if (!code.trimmed().isEmpty()) {
    useCode(code.trimmed());
  } else {
    say(tr("There is no text to paste. Copy the code first."));
  }
}

void PairingViewState::openImage(const QUrl& file) {
  readImage(file.toLocalFile());
}

QCoro::Task<> PairingViewState::readImage(QString path) {
  const QPointer self(this);
  const auto code = co_await client::onWorker([file = std::move(path)] { return codeInFile(file); }, {});
  if (!self || !m_scanning) co_return;
  if (code && *code) {
    useCode(**code);
  } else {
    say(tr("No pairing code was found in that picture."));
  }
}

void PairingViewState::say(const QString& notice) {
  m_pasteNotice = notice;
  emit changed();
}

void PairingViewState::useCode(const QString& code) {
  if (m_pairing || code.trimmed().isEmpty()) return;
  m_scanning = false;
  m_camera.reset();
  m_pairing = true;
  emit changed();
  m_pair(code, [self = QPointer(this)] {
    if (!self) return;
    self->m_pairing = false;
    emit self->changed();
  });
}

PairingViewState::Pair pairWith(model::AppModel& model) {
  return [&model](const QString& code, std::function<void()> done) { pairThen(&model, code, std::move(done)); };
}

}  // namespace varnel::screens
