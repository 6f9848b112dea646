// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/speech_recogniser_process.h"

#include <QCoreApplication>
#include <QCoroSignal>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <utility>

namespace varnel::platform {
namespace {

/// Ends the process when it is no longer wanted, without waiting for it.
struct EndLater {
  void operator()(QProcess* process) const {
    process->disconnect();
    if (process->state() == QProcess::NotRunning) {
      process->deleteLater();
      return;
    }
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->kill();
  }
};

std::unique_ptr<QProcess, EndLater> makeProcess() {
  std::unique_ptr<QProcess, EndLater> process(new QProcess);
  process->setStandardErrorFile(QProcess::nullDevice());
  return process;
}

class HelperTask : public RecognitionTask {
 public:
  HelperTask(const QString& helper, const QStringList& arguments, std::chrono::milliseconds patience)
      : m_process(makeProcess()) {
    m_limit.setSingleShot(true);
    m_limit.setInterval(patience);
    connect(&m_limit, &QTimer::timeout, this, [this] { m_process->kill(); });
    connect(m_process.get(), &QProcess::finished, this, &HelperTask::onEnded);
    // Started from the event loop, so that a helper that is not there fails from there, too.
    QTimer::singleShot(0, this, [this, helper, arguments] {
      connect(m_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) emit failed();
      });
      m_process->start(helper, arguments);
      for (const QByteArray& frames : std::exchange(m_waiting, {})) m_process->write(frames);
      if (m_isEnded) m_process->closeWriteChannel();
    });
  }

  void append(const QByteArray& frames) override {
    if (m_process->state() == QProcess::NotRunning) {
      m_waiting.append(frames);
    } else {
      m_process->write(frames);
    }
  }

  void endAudio() override {
    m_isEnded = true;
    if (m_process->state() != QProcess::NotRunning) m_process->closeWriteChannel();
    m_limit.start();
  }

 private:
  void onEnded(int code, QProcess::ExitStatus status) {
    m_limit.stop();
    if (status == QProcess::NormalExit && code == 0) {
      emit finished(QString::fromUtf8(m_process->readAllStandardOutput()));
    } else {
      emit failed();
    }
  }

  std::unique_ptr<QProcess, EndLater> m_process;
  QTimer m_limit;
  QList<QByteArray> m_waiting;  ///< until the process is started
  bool m_isEnded = false;
};

}  // namespace

ProcessSpeechRecogniser::ProcessSpeechRecogniser(QString helper, std::chrono::milliseconds patience)
    : m_helper(std::move(helper)), m_patience(patience) {}

QCoro::Task<bool> ProcessSpeechRecogniser::requestAuthorisation() {
  co_return true;  // what runs here sends nothing anywhere
}

QCoro::Task<bool> ProcessSpeechRecogniser::isAvailable(std::string locale) {
  using namespace std::chrono_literals;
  const auto process = makeProcess();
  const QStringList arguments{QStringLiteral("--probe"), QString::fromStdString(locale)};
  QTimer::singleShot(10s, process.get(), &QProcess::kill);
  process->start(m_helper, arguments);
  while (process->state() != QProcess::NotRunning) co_await qCoro(process.get(), &QProcess::stateChanged);
  co_return process->error() != QProcess::FailedToStart && process->exitStatus() == QProcess::NormalExit &&
      process->exitCode() == 0;
}

std::unique_ptr<RecognitionTask> ProcessSpeechRecogniser::start(const std::string& locale, AudioFormat format) {
  return std::make_unique<HelperTask>(
      m_helper, QStringList{QString::fromStdString(locale), QString::number(format.sampleRate)}, m_patience);
}

QString dictationHelper() {
  const QString name = QStringLiteral("varnel-dictate");
  const QDir here(QCoreApplication::applicationDirPath());
  // Beside the program, in its folder for helpers, and where a build puts it.
  for (const QString& path : {name, QStringLiteral("../libexec/") + name, QStringLiteral("../tools/dictate/") + name}) {
    if (QFileInfo(here.filePath(path)).isExecutable()) return here.filePath(path);
  }
  return QStandardPaths::findExecutable(name);
}

}  // namespace varnel::platform
