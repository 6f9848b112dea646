// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/shell/shell_state.h"

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
    shell = std::make_unique<ShellState>(
        *model, ShellState::Surroundings{.now = [this] { return clock->now; }, .clipboard = [this] { return copied; }});
  }

  QString copied;
  std::unique_ptr<ShellState> shell;
};

TEST_F(Shell, APastedCodePairsAndTheWayBackIsOpenToo) {
  makeUnpaired();
  make();
  shell->activated();
  EXPECT_FALSE(shell->isPaired());
  copied = QString::fromStdString(answers::code(1, bridge.baseURL()));
  bridge.expect("POST", model::kClaim, Script::json(200, R"({"deviceId":"d","token":"t"})"));
  expectStream(0);
  expectFullRefresh();
  shell->pairing()->startScanning();
  shell->pairing()->pasteCode();
  ASSERT_TRUE(spinUntil([this] { return shell->isPaired() && model->isConnected() && model->usage(); }));
  EXPECT_FALSE(shell->pairing()->isPairing());
  shell->sessions()->forgetPairing();
  EXPECT_FALSE(shell->isPaired());
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
  shell->sessions()->open(QStringLiteral("a"));
  const QPointer first = shell->session();
  ASSERT_TRUE(first);
  shell->sessions()->open(QStringLiteral("b"));
  EXPECT_EQ(shell->session()->sessionId(), QStringLiteral("b"));
  EXPECT_TRUE(first) << "its screen is still there until the event loop turns";
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(first);
  shell->sessions()->close();
  EXPECT_EQ(shell->session(), nullptr);
  settle();
}

}  // namespace
}  // namespace varnel::screens
