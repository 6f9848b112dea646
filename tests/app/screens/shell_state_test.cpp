// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/shell/shell_state.h"

#include "app/platform/defaults_store_memory.h"
#include "tests/app/model/model_fixture.h"

namespace varnel::screens {
namespace {

using model::Script;
using model::spinUntil;
namespace answers = model::answers;

class Shell : public model::ModelTest {
 protected:
  void TearDown() override { shell.reset(); }
  void make() {
    shell = std::make_unique<ShellState>(*model, settings,
                                         ScreenSurroundings{.now = [this] { return clock->now; },
                                                            .clipboard = [this] { return copied; },
                                                            .defaults = own,
                                                            .quit = [this] { ++quits; }});
  }

  QString copied;
  int quits = 0;
  std::shared_ptr<platform::MemoryDefaultsStore> own = std::make_shared<platform::MemoryDefaultsStore>();
  AppSettings settings{own};
  std::unique_ptr<ShellState> shell;
};

TEST_F(Shell, APastedCodePairsAndTheWayBackIsOpenToo) {
  makeUnpaired();
  make();
  shell->activated();
  EXPECT_EQ(shell->tabs(), nullptr);
  copied = QString::fromStdString(answers::code(1, bridge.baseURL()));
  bridge.expect("POST", model::kClaim, Script::json(200, R"({"deviceId":"d","token":"t"})"));
  expectStream(0);
  expectFullRefresh();
  shell->pairing()->startScanning();
  shell->pairing()->pasteCode();
  ASSERT_TRUE(spinUntil([this] { return shell->tabs() && model->isConnected() && model->usage(); }));
  EXPECT_FALSE(shell->pairing()->isPairing());
  shell->tabs()->settings()->forgetHost();
  EXPECT_EQ(shell->tabs(), nullptr);
}

TEST_F(Shell, ACodeThatIsNoneIsShownAsAnErrorUntilItIsDismissed) {
  makeUnpaired();
  make();
  shell->pairing()->useCode(QStringLiteral("not a code"));
  EXPECT_TRUE(shell->hasError());
  EXPECT_FALSE(shell->errorText().isEmpty());
  EXPECT_FALSE(shell->pairing()->isPairing());
  shell->dismissError();
  EXPECT_FALSE(shell->hasError());
}

TEST_F(Shell, OpeningAnotherConversationReplacesTheFormer) {
  makePaired();
  make();
  bridge.always("GET", "/v1/sessions/a", Script::json(500, "{}"));
  bridge.always("GET", "/v1/sessions/b", Script::json(500, "{}"));
  for (const auto* list : {model::kSessions, model::kProjects, model::kModels}) {
    bridge.always("GET", list, Script::json(500, "{}"));
  }
  shell->tabs()->sessions()->open(QStringLiteral("a"));
  const QPointer first = shell->tabs()->session();
  ASSERT_TRUE(first);
  shell->tabs()->sessions()->open(QStringLiteral("b"));
  EXPECT_EQ(shell->tabs()->session()->sessionId(), QStringLiteral("b"));
  EXPECT_TRUE(first) << "its screen is still there until the event loop turns";
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(first);
  shell->tabs()->sessions()->close();
  EXPECT_EQ(shell->tabs()->session(), nullptr);
  settle();
}

TEST_F(Shell, ALinkBringsItsConversationForwardWheneverItComes) {
  for (const auto* target : {model::kSessions, model::kProjects, model::kModels, "/v1/sessions/a", "/v1/sessions/b"}) {
    bridge.always("GET", target, Script::json(404, "{}"));
  }
  makePaired();
  model->handle("varnel://session/a");
  make();
  auto* tabs = shell->tabs();
  ASSERT_TRUE(tabs->session()) << "a cold start";
  EXPECT_EQ(tabs->session()->sessionId(), QStringLiteral("a"));
  EXPECT_EQ(tabs->session()->title(), QStringLiteral("Session")) << "nothing is known of it";

  int raised = 0;
  QObject::connect(shell.get(), &ShellState::raised, shell.get(), [&raised] { ++raised; });
  tabs->setTab(MainTabViewState::Settings);
  tabs->sessions()->setShowingArchived(true);
  shell->openLink(QStringLiteral("varnel://session/b"));
  EXPECT_EQ(raised, 1);
  EXPECT_EQ(tabs->tab(), MainTabViewState::Sessions);
  EXPECT_FALSE(tabs->sessions()->isShowingArchived());
  EXPECT_EQ(tabs->session()->sessionId(), QStringLiteral("b"));
  for (const char* other : {"Varnel://session/c", "varnel://Session/c", "https://session/c", "varnel:session/c", ""}) {
    shell->openLink(QLatin1String(other));
    EXPECT_EQ(tabs->session()->sessionId(), QStringLiteral("b")) << other;
  }
  settle();
  EXPECT_FALSE(shell->hasError()) << "an unknown conversation is no error";
}

TEST_F(Shell, ALinkFromBeforeThePairingIsOpenedAfterIt) {
  makeUnpaired();
  make();
  shell->openLink(QStringLiteral("varnel://session/s"));
  settle();
  EXPECT_FALSE(shell->hasError());
  bridge.expect("POST", model::kClaim, Script::json(200, R"({"deviceId":"d","token":"t"})"));
  bridge.always("GET", model::kDetail, Script::json(404, "{}"));
  expectStream(0);
  bridge.always("GET", model::kSessions, Script::json(200, answers::sessions({})));
  bridge.always("GET", model::kProjects, Script::json(200, answers::projects("/p")));
  bridge.always("GET", model::kModels, Script::json(200, answers::models("m")));
  bridge.always("GET", model::kUsage, Script::json(200, answers::usage(1)));
  shell->pairing()->useCode(QString::fromStdString(answers::code(1, bridge.baseURL())));
  ASSERT_TRUE(spinUntil([this] { return shell->tabs() && shell->tabs()->session() && model->usage(); }));
  EXPECT_EQ(shell->tabs()->session()->sessionId(), QStringLiteral("s"));
}

TEST_F(Shell, TheTitleCountsWhoWaitsForAnAnswer) {
  makePaired();
  make();
  EXPECT_EQ(shell->windowTitle(), QStringLiteral("Varnel"));
  expectGet(model::kSessions, R"({"sessions":[
    {"id":"a","project":"p","active":true,"state":"needsInput","latestCommentary":"","updatedAt":1,"pinned":false},
    {"id":"b","project":"p","active":true,"state":"working","latestCommentary":"","updatedAt":1,"pinned":false}]})");
  expectGet(model::kProjects, answers::projects("/p"));
  expectGet(model::kModels, answers::models("m"));
  support::await(model->refresh(false));
  EXPECT_EQ(shell->windowTitle(), QStringLiteral("(1) Varnel"));
}

TEST_F(Shell, ClosingTheWindowEndsTheRunOnlyWhereThatIsSet) {
  makeUnpaired();
  make();
  shell->windowClosed();
  EXPECT_EQ(quits, 0);
  settings.setOn(AppSettings::kKeepRunning, false);
  shell->windowClosed();
  EXPECT_EQ(quits, 1);
}

}  // namespace
}  // namespace varnel::screens
