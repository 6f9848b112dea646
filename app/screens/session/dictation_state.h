// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <memory>

namespace varnel::device {
class SpeechTranscriber;
}
namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

class ComposerState;

/// The button that dictates: what was said goes behind what is written, and is never sent by itself. Closing the
/// conversation ends a recording and drops it.
class DictationState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool recording READ isRecording NOTIFY changed)
  Q_PROPERTY(bool transcribing READ isTranscribing NOTIFY changed)
  Q_PROPERTY(bool canTranscribeAgain READ canTranscribeAgain NOTIFY changed)
  Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
  Q_PROPERTY(QString label READ label NOTIFY changed)
  Q_PROPERTY(QVariantList languages READ languages NOTIFY changed)

 public:
  /// Without a transcriber every attempt fails with the words for that.
  DictationState(std::unique_ptr<device::SpeechTranscriber> speech, model::AppModel& model, ComposerState& composer,
                 QObject* parent);
  ~DictationState() override;

  [[nodiscard]] bool isRecording() const;
  [[nodiscard]] bool isTranscribing() const;
  [[nodiscard]] bool canTranscribeAgain() const;
  [[nodiscard]] QString symbol() const;
  [[nodiscard]] QString label() const;
  /// Each a map of label, symbol and checked.
  [[nodiscard]] QVariantList languages() const;

  Q_INVOKABLE void toggle();
  Q_INVOKABLE void transcribeAgain();
  /// By its place among the languages.
  Q_INVOKABLE void chooseLanguage(int index);

 signals:
  void changed();

 private:
  void takeText();
  void takeError();

  std::unique_ptr<device::SpeechTranscriber> m_speech;
  model::AppModel& m_model;
  ComposerState& m_composer;
};

}  // namespace varnel::screens
