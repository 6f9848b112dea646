// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <QtCore/QTranslator>
#include <QtDBus/QDBusConnection>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtQuickControls2/QQuickStyle>
#include <QtTest/QTest>

#include "app/platform/defaults_store_memory.h"
#include "app/screens/shell/shell_state.h"
#include "app/ui/appearance.h"
#include "tests/app/model/model_fixture.h"

Q_IMPORT_QML_PLUGIN(Varnel_ScreensPlugin)
Q_IMPORT_QML_PLUGIN(Varnel_UiPlugin)
Q_IMPORT_QML_PLUGIN(VarnelStylePlugin)

namespace varnel::screens {
namespace {

using model::Script;
using model::spinUntil;
namespace answers = model::answers;

/// A language in which every text is a third longer and has accents.
class PseudoLocale : public QTranslator {
 public:
  [[nodiscard]] bool isEmpty() const override { return false; }
  [[nodiscard]] QString translate(const char* /*context*/, const char* source, const char* /*disambiguation*/,
                                  int /*n*/) const override {
    const QString text = QString::fromUtf8(source);
    return text + QStringLiteral(" ñé").repeated(1 + static_cast<int>(text.size()) / 9);
  }
};

/// The whole window on a bridge that answers, on the smallest phone.
class Layout : public model::ModelTest {
 protected:
  void TearDown() override {
    engine.reset();
    shell.reset();
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QCoreApplication::removeTranslator(&pseudo);
  }

  void answerEverything() {
    bridge.always("GET", model::kSessions, Script::json(200, R"({"sessions":[
      {"id":"s","name":"n","project":"A project with a name that is rather long","active":false,"state":"needsInput",
       "latestCommentary":"Two lines of commentary that go on and on until they have to be cut somewhere.","updatedAt":1,
       "pinned":true,"tracked":true}]})"));
    bridge.always("GET", model::kProjects,
                  Script::json(200, R"({"projects":[{"path":"/root/x","name":"x","highRisk":true}]})"));
    bridge.always("GET", model::kModels, Script::json(200, answers::models("m")));
    bridge.always("GET", model::kUsage, Script::json(200, answers::usage(60)));
    bridge.always("GET", model::kDetail, Script::json(404, "{}"));
    bridge.always("GET", "/v1/sessions/archived",
                  Script::json(200, R"({"data":[{"id":"a","cwd":"/x/y","updatedAt":1}]})"));
    bridge.always("GET", streamTarget(0), Script::acceptStream());
  }

  void show() {
    shell = std::make_unique<ShellState>(
        *model, settings,
        ScreenSurroundings{
            .now = [this] { return clock->now; }, .clipboard = [] { return QString(); }, .defaults = own});
    engine = std::make_unique<QQmlApplicationEngine>();
    engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine->setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(shell.get())},
                                  {QStringLiteral("appearance"), QVariant::fromValue(&appearance)}});
    engine->load(QUrl(QStringLiteral("qrc:/qt/qml/Varnel/Screens/RootView.qml")));
    ASSERT_FALSE(engine->rootObjects().isEmpty());
    window = qobject_cast<QQuickWindow*>(engine->rootObjects().front());
    window->resize(360, 640);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    settle();
  }

  /// Texts that are cut without saying so, and what stands out of the window at a side.
  [[nodiscard]] std::vector<std::string> clipped(const QQuickItem* item) const {
    std::vector<std::string> found;
    if (!item->isVisible() || item->opacity() == 0) return found;
    const QString text = item->property("text").toString();
    if (item->inherits("QQuickText") && !text.isEmpty() && item->width() > 0) {
      const bool cut = item->property("contentWidth").toDouble() > item->width() + 1;
      const QRectF place = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
      const bool outside = place.left() < -1 || place.right() > window->width() + 1;
      if (cut || outside) found.push_back(text.toStdString());
    }
    for (const QQuickItem* child : item->childItems()) {
      for (auto& each : clipped(child)) found.push_back(std::move(each));
    }
    return found;
  }

  void expectWhole(const char* screen) {
    settle();
    EXPECT_THAT(clipped(window->contentItem()), testing::IsEmpty()) << screen;
  }

  void walk() {
    makeUnpaired();
    show();
    expectWhole("pairing");
    shell->pairing()->startScanning();
    support::spinFor(std::chrono::milliseconds(400));
    expectWhole("pairing sheet");
    engine.reset();
    shell.reset();

    makePaired();
    answerEverything();
    show();
    ASSERT_TRUE(spinUntil([this] { return model->isConnected() && model->usage(); }));
    auto* tabs = shell->tabs();
    expectWhole("list");
    tabs->setTab(MainTabViewState::New);
    tabs->newSession()->setProject(1);
    tabs->newSession()->setApproval(1);
    expectWhole("new session");
    tabs->setTab(MainTabViewState::Settings);
    expectWhole("settings");
    tabs->setTab(MainTabViewState::Sessions);
    tabs->sessions()->setShowingUsage(true);
    support::spinFor(std::chrono::milliseconds(400));
    expectWhole("usage");
    tabs->sessions()->setShowingUsage(false);
    tabs->sessions()->setShowingArchived(true);
    support::spinFor(std::chrono::milliseconds(400));
    expectWhole("archive");
  }

  ui::Appearance appearance{ui::ColorScheme::Light, QDBusConnection(QString())};
  PseudoLocale pseudo;
  std::shared_ptr<platform::MemoryDefaultsStore> own = std::make_shared<platform::MemoryDefaultsStore>();
  AppSettings settings{own};
  std::unique_ptr<ShellState> shell;
  std::unique_ptr<QQmlApplicationEngine> engine;
  QQuickWindow* window = nullptr;
};

TEST_F(Layout, NothingIsCutInALongerLanguage) {
  QCoreApplication::installTranslator(&pseudo);
  walk();
}

TEST_F(Layout, NothingIsCutFromRightToLeft) {
  QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  walk();
}

}  // namespace
}  // namespace varnel::screens

int main(int argc, char* argv[]) {
  testing::InitGoogleTest(&argc, argv);
  const QGuiApplication application(argc, argv);
  QQuickStyle::setStyle(QStringLiteral("VarnelStyle"));
  return RUN_ALL_TESTS();
}
