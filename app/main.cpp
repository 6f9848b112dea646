// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <QtCore/QCommandLineParser>
#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQml/QQmlNetworkAccessManagerFactory>
#include <QtQuickControls2/QQuickStyle>
#include <cstdio>

#include "app/device/draft_store.h"
#include "app/device/speech_transcriber.h"
#include "app/model/app_model.h"
#include "app/notify.h"
#include "app/platform/microphone_multimedia.h"
#include "app/platform/speech_recogniser_process.h"
#include "app/screens/shell/shell_state.h"
#include "app/ui/appearance.h"

Q_IMPORT_QML_PLUGIN(VarnelStylePlugin)
Q_IMPORT_QML_PLUGIN(Varnel_UiPlugin)
Q_IMPORT_QML_PLUGIN(Varnel_ScreensPlugin)

namespace {

using varnel::ui::ColorScheme;

constexpr int kWrongUsage = 2;

/// What the command line asks for.
struct Options {
  ColorScheme scheme = ColorScheme::System;
  QString pairFrom;  ///< path of a file that holds a pairing code; empty for none
};

void say(const QString& text) {
  std::fputs(text.toLocal8Bit().append('\n').constData(), stderr);
}

/// Ends the program itself for --help, --version and wrong usage.
Options parseArguments() {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Follow and steer a coding agent that works on another machine."));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption scheme(QStringLiteral("color-scheme"), QStringLiteral("light, dark or system (default)."),
                                  QStringLiteral("SCHEME"), QStringLiteral("system"));
  const QCommandLineOption pairFrom(QStringLiteral("pair-from"),
                                    QStringLiteral("Pair with the code in FILE for this run alone; the device's own "
                                                   "pairing is left as it is. FILE is removed once read."),
                                    QStringLiteral("FILE"));
  parser.addOptions({scheme, pairFrom});
  if (!parser.parse(QGuiApplication::arguments())) {
    say(parser.errorText());
    std::exit(kWrongUsage);
  }
  if (parser.isSet(QStringLiteral("help"))) parser.showHelp();
  if (parser.isSet(QStringLiteral("version"))) parser.showVersion();
  const auto wanted = varnel::ui::colorSchemeNamed(parser.value(scheme));
  if (!wanted) {
    say(QStringLiteral("--color-scheme is light, dark or system, not \"%1\"").arg(parser.value(scheme)));
    std::exit(kWrongUsage);
  }
  return {.scheme = *wanted, .pairFrom = parser.value(pairFrom)};
}

/// The code in the file, which is gone afterwards: it lets whoever reads it first in.
QString takeCode(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    say(QStringLiteral("%1: %2").arg(path, file.errorString()));
    std::exit(1);
  }
  QString code = QString::fromUtf8(file.readAll()).trimmed();
  file.remove();
  return code;
}

/// Nothing that is shown may cause a request, whatever text the agent sends: every one fails before it leaves.
class NoNetwork : public QNetworkAccessManager {
 public:
  using QNetworkAccessManager::QNetworkAccessManager;

 protected:
  QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request, QIODevice* data) override {
    QNetworkRequest denied(request);
    denied.setUrl(QUrl(QStringLiteral("denied:")));
    return QNetworkAccessManager::createRequest(operation, denied, data);
  }
};

class NoNetworkFactory : public QQmlNetworkAccessManagerFactory {
 public:
  QNetworkAccessManager* create(QObject* parent) override { return new NoNetwork(parent); }
};

varnel::model::Surroundings surroundingsFor(const Options& options) {
  using varnel::model::Lasting;
  const QString directory = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
  auto surroundings = varnel::model::systemSurroundings(directory.toStdString(),
                                                        options.pairFrom.isEmpty() ? Lasting::Kept : Lasting::ThisRun);
  surroundings.inForeground = [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; };
  return surroundings;
}

double secondsNow() {
  constexpr double kMillisecondsInSecond = 1000;
  return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / kMillisecondsInSecond;
}

varnel::screens::SessionServices sessionServices(varnel::device::DraftStore& drafts,
                                                 std::shared_ptr<varnel::platform::DefaultsStore> defaults) {
  auto services = varnel::screens::systemServices();
  services.drafts = &drafts;
  services.makeSpeech = [defaults = std::move(defaults)] {
    return std::make_unique<varnel::device::SpeechTranscriber>(varnel::device::SpeechTranscriber::Device{
        .microphone = std::make_shared<varnel::platform::MultimediaMicrophone>(),
        .recogniser = std::make_shared<varnel::platform::ProcessSpeechRecogniser>(varnel::platform::dictationHelper()),
        .defaults = defaults});
  };
  return services;
}

QString clipboardText() {
  return QGuiApplication::clipboard()->text();
}

}  // namespace

int main(int argc, char* argv[]) {
  if (const auto code = varnel::notifyFromCommandLine(argc, argv)) return *code;
  QGuiApplication application(argc, argv);
  QGuiApplication::setApplicationName(QStringLiteral("varnel-app"));
  QGuiApplication::setApplicationDisplayName(QStringLiteral("Varnel"));
  QGuiApplication::setApplicationVersion(QStringLiteral(VARNEL_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("org.varnel.Varnel"));
  const Options options = parseArguments();

  const QString code = options.pairFrom.isEmpty() ? QString() : takeCode(options.pairFrom);

  auto surroundings = surroundingsFor(options);
  const auto defaults = surroundings.defaults;
  varnel::device::DraftStore drafts(*defaults);
  surroundings.onUnpair.emplace_back([&drafts] { drafts.clear(); });
  varnel::model::AppModel model(std::move(surroundings));
  varnel::ui::Appearance appearance(options.scheme, QDBusConnection::sessionBus());
  varnel::screens::ShellState shell(
      model, {.now = secondsNow, .clipboard = clipboardText, .session = sessionServices(drafts, defaults)});

  QQuickStyle::setStyle(QStringLiteral("VarnelStyle"));
  NoNetworkFactory noNetwork;
  QQmlApplicationEngine engine;
  engine.setNetworkAccessManagerFactory(&noNetwork);
  engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
  engine.setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&shell)},
                               {QStringLiteral("appearance"), QVariant::fromValue(&appearance)}});
  engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Varnel/Screens/Main.qml")));
  if (engine.rootObjects().isEmpty()) return 1;

  shell.pairing()->useCode(code);
  return QGuiApplication::exec();
}
