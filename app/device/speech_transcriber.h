// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

#include "app/platform/defaults_store.h"
#include "app/platform/microphone.h"
#include "app/platform/speech_recogniser.h"

namespace varnel::device {

/// Dictation: records until it is told to stop, then publishes what was said, once, as `completedText`. At any moment
/// it is idle, recording or transcribing. Main thread; owned by the screen that shows it, and everything under way goes
/// with it.
///
/// After a recognition that failed or heard nothing, what was recorded is kept, so that it can be tried once more.
class SpeechTranscriber : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
  Q_PROPERTY(bool isTranscribing READ isTranscribing NOTIFY isTranscribingChanged)
  Q_PROPERTY(bool canTranscribeAgain READ canTranscribeAgain NOTIFY canTranscribeAgainChanged)
  Q_PROPERTY(QString completedText READ completedText WRITE setCompletedText NOTIFY completedTextChanged)
  Q_PROPERTY(QString errorMessage READ errorMessage WRITE setErrorMessage NOTIFY errorMessageChanged)
  Q_PROPERTY(Language language READ language WRITE setLanguage NOTIFY languageChanged)

 public:
  enum class Language { English, French };
  Q_ENUM(Language)

  /// What it works with.
  struct Device {
    std::shared_ptr<platform::Microphone> microphone;
    std::shared_ptr<platform::SpeechRecogniser> recogniser;
    std::shared_ptr<platform::DefaultsStore> defaults;
  };
  explicit SpeechTranscriber(Device device, QObject* parent = nullptr);
  ~SpeechTranscriber() override;

  [[nodiscard]] bool isRecording() const { return m_isRecording; }
  [[nodiscard]] bool isTranscribing() const { return m_isTranscribing; }
  [[nodiscard]] bool canTranscribeAgain() const { return m_canTranscribeAgain; }
  /// The last transcription, trimmed; whoever uses it sets it back to "".
  [[nodiscard]] QString completedText() const { return m_completedText; }
  void setCompletedText(const QString& text);
  /// The user's text of the last failure; null for none.
  [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
  void setErrorMessage(const QString& text);
  [[nodiscard]] Language language() const { return m_language; }
  void setLanguage(Language language);
  /// Each language's own name for itself, in the order of the enumerators.
  [[nodiscard]] static QStringList languageNames();

  /// Begins to record, or stops. While it is still about to begin, that is given up; while transcribing, nothing
  /// happens.
  Q_INVOKABLE void toggle();
  Q_INVOKABLE void stop();
  /// Has the kept recording recognised, in the language of now.
  Q_INVOKABLE void transcribeAgain();

 signals:
  void isRecordingChanged();
  void isTranscribingChanged();
  void canTranscribeAgainChanged();
  void completedTextChanged();
  void errorMessageChanged();
  void languageChanged();

 private:
  QCoro::Task<> start();
  QCoro::Task<bool> isPermitted();
  void listen();
  void beginTask(platform::AudioFormat format);
  void hear(const QByteArray& frames);
  void onFailed();
  void finish(const QString& text);
  void cleanUp(bool keepsRecording);
  void setRecording(bool isRecording);
  void setTranscribing(bool isTranscribing);
  void setCanTranscribeAgain(bool can);

  Device m_device;
  std::unique_ptr<platform::RecognitionTask> m_task;
  QByteArray m_recording;  ///< of the dictation under way, or kept
  platform::AudioFormat m_format;
  unsigned m_start = 0;  ///< counts the attempts to begin; an earlier one is given up
  bool m_isStarting = false;
  bool m_isRepeated = false;  ///< the recording under way is a kept one
  bool m_isRecording = false;
  bool m_isTranscribing = false;
  bool m_canTranscribeAgain = false;
  QString m_completedText;
  QString m_errorMessage;
  Language m_language = Language::English;
};

}  // namespace varnel::device
