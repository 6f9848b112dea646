// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/speech_transcriber.h"

#include <QPointer>
#include <string>
#include <utility>

namespace varnel::device {
namespace {

constexpr std::string_view kLanguageKey = "Varnel.SpeechLanguage";
constexpr std::string_view kEnglish = "en-CA";
constexpr std::string_view kFrench = "fr-CA";

std::string localeOf(SpeechTranscriber::Language language) {
  return std::string(language == SpeechTranscriber::Language::French ? kFrench : kEnglish);
}

}  // namespace

SpeechTranscriber::SpeechTranscriber(Device device, QObject* parent) : QObject(parent), m_device(std::move(device)) {
  if (m_device.defaults->get<std::string>(kLanguageKey) == kFrench) m_language = Language::French;
  connect(m_device.microphone.get(), &platform::Microphone::captured, this, &SpeechTranscriber::hear);
}

SpeechTranscriber::~SpeechTranscriber() {
  disconnect(m_device.microphone.get(), nullptr, this, nullptr);
  if (m_device.microphone->isRunning()) m_device.microphone->stop();
}

QStringList SpeechTranscriber::languageNames() {
  return {QStringLiteral("English"), QStringLiteral("Français")};
}

void SpeechTranscriber::setLanguage(Language language) {
  // On failure the choice holds for this run; there is no text for it.
  static_cast<void>(m_device.defaults->set(kLanguageKey, localeOf(language)));
  if (m_language == language) return;
  m_language = language;
  emit languageChanged();
}

void SpeechTranscriber::setCompletedText(const QString& text) {
  if (m_completedText == text) return;
  m_completedText = text;
  emit completedTextChanged();
}

void SpeechTranscriber::setErrorMessage(const QString& text) {
  if (m_errorMessage == text) return;
  m_errorMessage = text;
  emit errorMessageChanged();
}

void SpeechTranscriber::toggle() {
  if (m_isRecording) {
    stop();
  } else if (m_isStarting) {
    m_isStarting = false;
    ++m_start;
  } else {
    start();
  }
}

QCoro::Task<> SpeechTranscriber::start() {
  if (m_isRecording || m_isTranscribing) co_return;
  const QPointer<SpeechTranscriber> self(this);
  const unsigned attempt = ++m_start;
  m_isStarting = true;
  setErrorMessage(QString());

  const bool permitted = co_await isPermitted();
  if (self.isNull() || attempt != m_start) co_return;
  if (!permitted) {
    m_isStarting = false;
    setErrorMessage(tr("Enable microphone and speech recognition access in Settings."));
    co_return;
  }
  const bool available = co_await m_device.recogniser->isAvailable(localeOf(m_language));
  if (self.isNull() || attempt != m_start) co_return;
  m_isStarting = false;
  if (!available) {
    setErrorMessage(tr("Speech recognition is unavailable."));
    co_return;
  }
  listen();
}

QCoro::Task<bool> SpeechTranscriber::isPermitted() {
  // The screen may go while the user is asked: what is awaited is held, not looked up again.
  const Device device = m_device;
  const bool speech = co_await device.recogniser->requestAuthorisation();
  if (!speech) co_return false;
  const bool microphone = co_await device.microphone->requestPermission();
  co_return microphone;
}

void SpeechTranscriber::listen() {
  const auto format = m_device.microphone->start();
  if (!format) {
    cleanUp(false);
    setErrorMessage(tr("Could not start recording."));
    return;
  }
  m_recording.clear();
  m_isRepeated = false;
  setCanTranscribeAgain(false);
  setRecording(true);
  beginTask(*format);
}

void SpeechTranscriber::beginTask(platform::AudioFormat format) {
  m_format = format;
  m_task = m_device.recogniser->start(localeOf(m_language), format);
  connect(m_task.get(), &platform::RecognitionTask::finished, this, &SpeechTranscriber::finish);
  connect(m_task.get(), &platform::RecognitionTask::failed, this, &SpeechTranscriber::onFailed);
}

void SpeechTranscriber::hear(const QByteArray& frames) {
  if (!m_task || !m_isRecording) return;
  m_recording += frames;
  m_task->append(frames);
}

void SpeechTranscriber::stop() {
  if (!m_isRecording) return;
  m_device.microphone->stop();
  if (m_task) m_task->endAudio();
  setRecording(false);
  setTranscribing(true);
}

void SpeechTranscriber::transcribeAgain() {
  if (!m_canTranscribeAgain || m_isStarting || m_isRecording || m_isTranscribing) return;
  setErrorMessage(QString());
  setCanTranscribeAgain(false);
  m_isRepeated = true;
  beginTask(m_format);
  m_task->append(m_recording);
  m_task->endAudio();
  setTranscribing(true);
}

void SpeechTranscriber::onFailed() {
  const bool wasTranscribing = m_isTranscribing;
  cleanUp(true);
  if (wasTranscribing) setErrorMessage(tr("No speech was recognized."));
}

void SpeechTranscriber::finish(const QString& text) {
  const QString trimmed = text.trimmed();
  const bool isSilent = trimmed.isEmpty();
  const bool wasTranscribing = m_isTranscribing;
  cleanUp(isSilent);
  if (!isSilent) {
    setCompletedText(trimmed);
  } else if (wasTranscribing) {
    setErrorMessage(tr("No speech was recognized."));
  }
}

/// Back to idle. A recording is kept for one more try only.
void SpeechTranscriber::cleanUp(bool keepsRecording) {
  if (m_device.microphone->isRunning()) m_device.microphone->stop();
  if (m_task) {
    disconnect(m_task.get(), nullptr, this, nullptr);
    m_task.release()->deleteLater();  // it may be the one that is speaking
  }
  const bool isKept = keepsRecording && !m_isRepeated && !m_recording.isEmpty();
  if (!isKept) m_recording.clear();
  setRecording(false);
  setTranscribing(false);
  setCanTranscribeAgain(isKept);
}

void SpeechTranscriber::setRecording(bool isRecording) {
  if (m_isRecording == isRecording) return;
  m_isRecording = isRecording;
  emit isRecordingChanged();
}

void SpeechTranscriber::setTranscribing(bool isTranscribing) {
  if (m_isTranscribing == isTranscribing) return;
  m_isTranscribing = isTranscribing;
  emit isTranscribingChanged();
}

void SpeechTranscriber::setCanTranscribeAgain(bool can) {
  if (m_canTranscribeAgain == can) return;
  m_canTranscribeAgain = can;
  emit canTranscribeAgainChanged();
}

}  // namespace varnel::device
