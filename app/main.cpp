// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <QtCore/QCommandLineParser>
#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QStandardPaths>
#include <QtCore/QTranslator>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQml/QQmlNetworkAccessManagerFactory>
#include <QtQuickControls2/QQuickStyle>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "app/device/draft_store.h"
#include "app/device/speech_transcriber.h"
#include "app/model/app_model.h"
#include "app/model/offline_cache.h"
#include "app/notify.h"
#include "app/platform/desktop_application.h"
#include "app/platform/microphone_multimedia.h"
#include "app/platform/multimedia_camera.h"
#include "app/platform/speech_recogniser_process.h"
#include "app/screens/settings/app_settings.h"
#include "app/screens/shell/shell_state.h"
#include "app/ui/appearance.h"

Q_IMPORT_QML_PLUGIN(VarnelStylePlugin)
Q_IMPORT_QML_PLUGIN(Varnel_UiPlugin)
Q_IMPORT_QML_PLUGIN(Varnel_ScreensPlugin)

namespace {

using varnel::platform::DesktopApplication;
using varnel::screens::AppSettings;
using varnel::ui::ColorScheme;

constexpr int kWrongUsage = 2;
const QString kApplicationId = QStringLiteral("org.varnel.Varnel");

/// What the command line asks for.
struct Options {
  std::optional<ColorScheme> scheme;  ///< overrules the setting
  QString pairFrom;                   ///< path of a file that holds a pairing code; empty for none
  QStringList links;
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
  const QCommandLineOption scheme(QStringLiteral("color-scheme"),
                                  QStringLiteral("light, dark or system; as set in the application otherwise."),
                                  QStringLiteral("SCHEME"));
  const QCommandLineOption pairFrom(QStringLiteral("pair-from"),
                                    QStringLiteral("Pair with the code in FILE for this run alone; the device's own "
                                                   "pairing is left as it is. FILE is removed once read."),
                                    QStringLiteral("FILE"));
  parser.addOptions({scheme, pairFrom});
  parser.addPositionalArgument(QStringLiteral("link"), QStringLiteral("A link to open, varnel://session/ID."),
                               QStringLiteral("[link...]"));
  if (!parser.parse(QGuiApplication::arguments())) {
    say(parser.errorText());
    std::exit(kWrongUsage);
  }
  if (parser.isSet(QStringLiteral("help"))) parser.showHelp();
  if (parser.isSet(QStringLiteral("version"))) parser.showVersion();
  Options options{.scheme = std::nullopt, .pairFrom = parser.value(pairFrom), .links = parser.positionalArguments()};
  if (parser.isSet(scheme)) {
    options.scheme = varnel::ui::colorSchemeNamed(parser.value(scheme));
    if (!options.scheme) {
      say(QStringLiteral("--color-scheme is light, dark or system, not \"%1\"").arg(parser.value(scheme)));
      std::exit(kWrongUsage);
    }
  }
  return options;
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

std::filesystem::path dataDirectory() {
  return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation).toStdString();
}

varnel::model::Surroundings surroundingsFor(const Options& options) {
  using varnel::model::Lasting;
  auto surroundings =
      varnel::model::systemSurroundings(dataDirectory(), options.pairFrom.isEmpty() ? Lasting::Kept : Lasting::ThisRun);
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

std::unique_ptr<varnel::platform::Camera> makeCamera() {
  return std::make_unique<varnel::platform::MultimediaCamera>();
}

const std::vector<varnel::wire::SessionSummary>* savedSessions(
    const std::optional<varnel::model::OfflineCache>& offline) {
  return offline && offline->isWanted() ? &offline->sessions() : nullptr;
}

QString draftText(const varnel::device::DraftStore& drafts, const std::string& sessionId) {
  return QString::fromStdString(drafts.draft(sessionId).text);
}

/// Words in the language that is set, or the system's.
void installTranslations(QTranslator& translator, const AppSettings& settings) {
  const QString language = settings.text(AppSettings::kLanguage);
  if (!language.isEmpty()) QLocale::setDefault(QLocale(language));
  if (translator.load(QLocale(), QStringLiteral("varnel"), QStringLiteral("_"), QStringLiteral(":/i18n"))) {
    QCoreApplication::installTranslator(&translator);
    QGuiApplication::setLayoutDirection(QLocale().textDirection());
  }
}

ColorScheme schemeFor(const Options& options, const AppSettings& settings) {
  const auto set = varnel::ui::colorSchemeNamed(settings.text(AppSettings::kAppearance));
  return options.scheme.value_or(set.value_or(ColorScheme::System));
}

/// Links that the desktop or a second instance passes on, and the wish to see the window.
void listen(const DesktopApplication& desktop, varnel::screens::ShellState& shell) {
  QObject::connect(&desktop, &DesktopApplication::activated, &shell, &varnel::screens::ShellState::raised);
  QObject::connect(&desktop, &DesktopApplication::linkOpened, &shell, &varnel::screens::ShellState::openLink);
}

}  // namespace

int main(int argc, char* argv[]) {
  if (const auto code = varnel::notifyFromCommandLine(argc, argv)) return *code;
  QGuiApplication application(argc, argv);
  QGuiApplication::setApplicationName(QStringLiteral("varnel-app"));
  QGuiApplication::setApplicationDisplayName(QStringLiteral("Varnel"));
  QGuiApplication::setApplicationVersion(QStringLiteral(VARNEL_VERSION));
  QGuiApplication::setDesktopFileName(kApplicationId);
  const Options options = parseArguments();

  // A run on a pairing of its own is nobody's second instance.
  DesktopApplication desktop(QDBusConnection::sessionBus(), kApplicationId);
  const auto instance =
      options.pairFrom.isEmpty() ? desktop.join(options.links) : DesktopApplication::Instance::Unreachable;
  if (instance == DesktopApplication::Instance::Second) return 0;
  // Without its window an instance that nobody can reach would be lost.
  QGuiApplication::setQuitOnLastWindowClosed(instance == DesktopApplication::Instance::Unreachable);

  const QString code = options.pairFrom.isEmpty() ? QString() : takeCode(options.pairFrom);

  auto surroundings = surroundingsFor(options);
  const auto defaults = surroundings.defaults;
  const auto activitiesEnabled = surroundings.liveActivities.areEnabled;
  AppSettings settings(defaults);
  QTranslator translator;
  installTranslations(translator, settings);
  varnel::device::DraftStore drafts(*defaults);
  surroundings.onUnpair.emplace_back([&drafts] { drafts.clear(); });
  varnel::model::AppModel model(std::move(surroundings));
  // A run on a pairing of its own leaves nothing behind.
  std::optional<varnel::model::OfflineCache> offline;
  if (options.pairFrom.isEmpty()) offline.emplace(model, dataDirectory() / "offline");
  varnel::ui::Appearance appearance(schemeFor(options, settings), QDBusConnection::sessionBus());
  QObject::connect(&settings, &AppSettings::changed, &appearance,
                   [&] { appearance.setScheme(schemeFor(options, settings)); });
  varnel::screens::ShellState shell(model, settings,
                                    {.now = secondsNow,
                                     .clipboard = clipboardText,
                                     .defaults = defaults,
                                     .session = sessionServices(drafts, defaults),
                                     .draftOf = [&drafts](const std::string& id) { return draftText(drafts, id); },
                                     .savedSessions = [&offline] { return savedSessions(offline); },
                                     .activitiesEnabled = activitiesEnabled,
                                     .makeCamera = makeCamera,
                                     .quit = QCoreApplication::quit});
  listen(desktop, shell);
  for (const QString& link : options.links) shell.openLink(link);

  QQuickStyle::setStyle(QStringLiteral("VarnelStyle"));
  NoNetworkFactory noNetwork;
  QQmlApplicationEngine engine;
  engine.setNetworkAccessManagerFactory(&noNetwork);
  engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
  engine.setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&shell)},
                               {QStringLiteral("appearance"), QVariant::fromValue(&appearance)}});
  engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Varnel/Screens/RootView.qml")));
  if (engine.rootObjects().isEmpty()) return 1;

  shell.pairing()->useCode(code);
  return QGuiApplication::exec();
}
