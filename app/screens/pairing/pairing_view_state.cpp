// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/pairing/pairing_view_state.h"

#include <QtCore/QPointer>

#include "app/model/app_model.h"
#include "app/ui/host_label.h"

namespace varnel::screens {
namespace {

QCoro::Task<> pairThen(model::AppModel* model, QString code, std::function<void()> done) {
  co_await model->pair(code);
  done();
}

}  // namespace

PairingViewState::PairingViewState(Pair pair, std::function<QString()> clipboard, QObject* parent)
    : QObject(parent), m_pair(std::move(pair)), m_clipboard(std::move(clipboard)) {}

QString PairingViewState::instruction() const {
  return tr("Run varnel pair on %1, then scan the one-time code.").arg(ui::hostLabel());
}

QString PairingViewState::instructionMarkup() const {
  return tr("Run <code>varnel pair</code> on %1, then scan the one-time code.").arg(ui::hostLabel());
}

QString PairingViewState::cameraNotice() const {
  return tr("No camera is available. Copy the code that varnel pair prints on %1 and paste it here.")
      .arg(ui::hostLabel());
}

void PairingViewState::startScanning() {
  m_scanning = true;
  m_pasteNotice.clear();
  emit changed();
}

void PairingViewState::stopScanning() {
  if (!m_scanning) return;
  m_scanning = false;
  emit changed();
}

void PairingViewState::pasteCode() {
  const QString code = m_clipboard();
  if (!code.trimmed().isEmpty()) {
    useCode(code);
    return;
  }
  m_pasteNotice = tr("There is no text to paste. Copy the code first.");
  emit changed();
}

void PairingViewState::useCode(const QString& code) {
  if (m_pairing || code.trimmed().isEmpty()) return;
  m_scanning = false;
  m_pairing = true;
  emit changed();
  m_pair(code.trimmed(), [self = QPointer(this)] {
    if (!self) return;
    self->m_pairing = false;
    emit self->changed();
  });
}

PairingViewState::Pair pairWith(model::AppModel& model) {
  return [&model](const QString& code, std::function<void()> done) { pairThen(&model, code, std::move(done)); };
}

}  // namespace varnel::screens
