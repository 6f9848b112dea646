// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/dictation_state.h"

#include <utility>

#include "app/device/speech_transcriber.h"
#include "app/model/app_model.h"
#include "app/screens/session/composer_state.h"

namespace varnel::screens {

using device::SpeechTranscriber;

DictationState::DictationState(std::unique_ptr<SpeechTranscriber> speech, model::AppModel& model,
                               ComposerState& composer, QObject* parent)
    : QObject(parent), m_speech(std::move(speech)), m_model(model), m_composer(composer) {
  if (!m_speech) return;
  const auto* transcriber = m_speech.get();
  connect(transcriber, &SpeechTranscriber::isRecordingChanged, this, &DictationState::changed);
  connect(transcriber, &SpeechTranscriber::isTranscribingChanged, this, &DictationState::changed);
  connect(transcriber, &SpeechTranscriber::canTranscribeAgainChanged, this, &DictationState::changed);
  connect(transcriber, &SpeechTranscriber::languageChanged, this, &DictationState::changed, Qt::QueuedConnection);
  connect(transcriber, &SpeechTranscriber::completedTextChanged, this, &DictationState::takeText);
  connect(transcriber, &SpeechTranscriber::errorMessageChanged, this, &DictationState::takeError);
}

DictationState::~DictationState() = default;

bool DictationState::isRecording() const {
  return m_speech && m_speech->isRecording();
}

bool DictationState::isTranscribing() const {
  return m_speech && m_speech->isTranscribing();
}

bool DictationState::canTranscribeAgain() const {
  return m_speech && m_speech->canTranscribeAgain();
}

QString DictationState::symbol() const {
  return isRecording() ? QStringLiteral("stop.fill") : QStringLiteral("mic.fill");
}

QString DictationState::label() const {
  return isRecording() ? tr("Stop recording") : tr("Dictate message");
}

QVariantList DictationState::languages() const {
  QVariantList result;
  if (!m_speech) return result;
  for (const QString& name : SpeechTranscriber::languageNames()) {
    const bool current = static_cast<int>(m_speech->language()) == result.size();
    result.append(
        QVariantMap{{QStringLiteral("label"), name},
                    {QStringLiteral("symbol"), current ? QStringLiteral("checkmark") : QStringLiteral("globe")},
                    {QStringLiteral("checked"), current}});
  }
  return result;
}

void DictationState::toggle() {
  if (m_speech) {
    m_speech->toggle();
  } else {
    m_model.report(tr("Speech recognition is unavailable."));
  }
}

void DictationState::transcribeAgain() {
  if (m_speech) m_speech->transcribeAgain();
}

void DictationState::chooseLanguage(int index) {
  if (m_speech) m_speech->setLanguage(static_cast<SpeechTranscriber::Language>(index));
}

void DictationState::takeText() {
  const QString text = m_speech->completedText();
  if (text.isEmpty()) return;
  m_composer.append(text);
  m_speech->setCompletedText({});
}

void DictationState::takeError() {
  if (!m_speech->errorMessage().isNull()) m_model.report(m_speech->errorMessage());
}

}  // namespace varnel::screens
