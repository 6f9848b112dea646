// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
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

/// By sight: what a Repeater makes is nobody's child but that of the item it shows in.
QQuickItem* below(QQuickItem* item, const QString& name) {
  if (item->objectName() == name) return item;
  for (QQuickItem* child : item->childItems()) {
    if (QQuickItem* found = below(child, name)) return found;
  }
  return nullptr;
}

/// The whole window on a scripted bridge, touched by keys.
class Window : public model::ModelTest {
 protected:
  void TearDown() override {
    engine.reset();
    shell.reset();
  }

  void show(int width, int height) {
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
    window->resize(width, height);
    window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  }

  [[nodiscard]] QObject* alert() const { return window->findChild<QObject*>(QStringLiteral("alert")); }
  [[nodiscard]] QString alertText() const { return alert()->property("message").toString(); }
  [[nodiscard]] bool isFullyShown(const QQuickItem* item) const {
    return QRectF(0, 0, window->width(), window->height())
        .contains(item->mapRectToScene(QRectF(0, 0, item->width(), item->height())));
  }
  void press(Qt::Key key) const { QTest::keyClick(window, key); }

  ui::Appearance appearance{ui::ColorScheme::Light, QDBusConnection(QString())};
  std::shared_ptr<platform::MemoryDefaultsStore> own = std::make_shared<platform::MemoryDefaultsStore>();
  AppSettings settings{own};
  std::unique_ptr<ShellState> shell;
  std::unique_ptr<QQmlApplicationEngine> engine;
  QQuickWindow* window = nullptr;
};

TEST_F(Window, ALongErrorLeavesItsButtonInReachOnASmallScreen) {
  makeUnpaired();
  show(360, 296);
  model->report(QStringLiteral("a word ").repeated(1'000));
  ASSERT_TRUE(spinUntil([this] { return alert()->property("opened").toBool(); }));
  const QQuickItem* button = window->activeFocusItem();
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->property("text").toString(), QStringLiteral("OK"));
  EXPECT_TRUE(isFullyShown(button));

  const auto* reading = alert()->property("contentItem").value<QQuickItem*>()->childItems().front();
  EXPECT_GT(reading->height(), 50);
  press(Qt::Key_Down);
  EXPECT_GT(reading->property("contentY").toDouble(), 0);
  press(Qt::Key_Space);
  EXPECT_TRUE(spinUntil([this] { return !alert()->property("visible").toBool(); }));
  EXPECT_FALSE(model->hasErrorMessage());
}

TEST_F(Window, AnErrorThatComesWhileTheFormerFadesIsShown) {
  makeUnpaired();
  show(390, 844);
  model->report(QStringLiteral("first"));
  ASSERT_TRUE(spinUntil([this] { return alert()->property("opened").toBool(); }));
  press(Qt::Key_Escape);
  EXPECT_FALSE(model->hasErrorMessage());
  ASSERT_TRUE(alert()->property("visible").toBool()) << "it is still fading";
  EXPECT_EQ(alertText(), QStringLiteral("first"));
  model->report(QStringLiteral("second"));
  ASSERT_TRUE(spinUntil([this] { return alert()->property("opened").toBool(); }));
  support::spinFor(std::chrono::milliseconds(300));
  EXPECT_TRUE(alert()->property("opened").toBool());
  EXPECT_EQ(alertText(), QStringLiteral("second"));
  EXPECT_EQ(model->errorText(), QStringLiteral("second"));
}

class LongConversation : public Window {
 protected:
  void SetUp() override {
    makePaired();
    std::vector<std::string> items;
    for (int item = 0; item < kItems; ++item) items.push_back(message(item));
    bridge.always("GET", model::kDetail, Script::json(200, answers::detail(items)));
    bridge.always("GET", model::kSessions, Script::json(200, answers::sessions({answers::summary("s")})));
    bridge.always("GET", model::kProjects, Script::json(200, answers::projects("/p")));
    bridge.always("GET", model::kModels, Script::json(200, answers::models("m")));
    bridge.always("GET", model::kUsage, Script::json(200, answers::usage(1)));
    bridge.always("GET", streamTarget(0), Script::acceptStream());
    show(390, 600);
    shell->tabs()->sessions()->open(QStringLiteral("s"));
    ASSERT_TRUE(spinUntil([this] { return list() && is("atYEnd") && list()->property("count").toInt() == kItems; }));
    settle();
    list()->forceActiveFocus();
  }

  static std::string message(int item) {
    return answers::item(std::to_string(item), "user", "A message that is long enough to be read on two lines.");
  }
  [[nodiscard]] QQuickItem* list() const { return below(window->contentItem(), QStringLiteral("transcript")); }
  [[nodiscard]] bool is(const char* property) const { return list()->property(property).toBool(); }
  [[nodiscard]] double position() const {
    return list()->property("contentY").toDouble() - list()->property("originY").toDouble();
  }

  static constexpr int kItems = 40;
};

TEST_F(LongConversation, IsReadByKeysFromEndToBeginning) {
  double before = position();
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_PageUp}) {
    press(key);
    EXPECT_LT(position(), before) << key;
    before = position();
    settle();
    EXPECT_FALSE(is("atYEnd")) << "whoever reads is left alone";
  }
  press(Qt::Key_Home);
  EXPECT_TRUE(spinUntil([this] { return is("atYBeginning"); }));
  press(Qt::Key_Up);
  EXPECT_TRUE(is("atYBeginning"));
  before = position();
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_PageDown}) {
    press(key);
    EXPECT_GT(position(), before) << key;
    before = position();
  }
  press(Qt::Key_End);
  EXPECT_TRUE(spinUntil([this] { return is("atYEnd"); }));
}

TEST_F(LongConversation, IsNotPulledFromUnderTheFinger) {
  const QPoint middle(window->width() / 2, window->height() / 2);
  QPointingDevice* finger = QTest::createTouchDevice();
  QTest::touchEvent(window, finger).press(0, middle, window);
  for (int step = 1; step <= 10; ++step) {
    QTest::touchEvent(window, finger).move(0, middle + QPoint(0, step * 8), window);
    support::spinFor(std::chrono::milliseconds(5));
  }
  ASSERT_TRUE(is("dragging"));
  const double held = position();
  std::vector<std::string> items;
  for (int item = 0; item <= kItems; ++item) items.push_back(message(item));
  bridge.always("GET", model::kDetail, Script::json(200, answers::detail(items)));
  support::await(model->loadSession("s"));
  ASSERT_TRUE(spinUntil([this] { return list()->property("count").toInt() == kItems + 1; }));
  settle();
  EXPECT_NEAR(position(), held, 1);
  QTest::touchEvent(window, finger).release(0, middle + QPoint(0, 80), window);
}

}  // namespace
}  // namespace varnel::screens

int main(int argc, char* argv[]) {
  testing::InitGoogleTest(&argc, argv);
  const QGuiApplication application(argc, argv);
  QQuickStyle::setStyle(QStringLiteral("VarnelStyle"));
  return RUN_ALL_TESTS();
}
