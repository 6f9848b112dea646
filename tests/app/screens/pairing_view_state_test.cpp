// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/pairing/pairing_view_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace varnel::screens {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Pairing : public testing::Test {
 protected:
  std::vector<std::string> codes;
  std::vector<bool> sheetWasOpen;  ///< at the moment each code was handed over
  std::function<void()> finish;
  QString clipboard;
  std::unique_ptr<PairingViewState> state = std::make_unique<PairingViewState>(
      [this](const QString& code, std::function<void()> done) {
        codes.push_back(code.toStdString());
        sheetWasOpen.push_back(state->isScanning());
        finish = std::move(done);
      },
      ScreenSurroundings{.now = [] { return 0.0; }, .clipboard = [this] { return clipboard; }, .defaults = nullptr});
};

TEST_F(Pairing, APastedCodeClosesTheSheetThenPairsOnce) {
  clipboard = QStringLiteral(" {\"version\":1} \n");
  state->startScanning();
  EXPECT_TRUE(state->isScanning());
  state->pasteCode();
  state->pasteCode();
  EXPECT_THAT(codes, ElementsAre("{\"version\":1}")) << "a second press while the first is under way does nothing";
  EXPECT_THAT(sheetWasOpen, ElementsAre(false));
  EXPECT_TRUE(state->isPairing());
  finish();
  EXPECT_FALSE(state->isPairing());
  state->useCode(QStringLiteral("again"));
  EXPECT_EQ(codes.size(), 2U) << "after a failure the next code is taken";
}

TEST_F(Pairing, NothingToPasteIsSaidAndTheSheetStays) {
  clipboard = QStringLiteral(" \n");
  state->startScanning();
  state->pasteCode();
  EXPECT_THAT(codes, IsEmpty());
  EXPECT_TRUE(state->isScanning());
  EXPECT_FALSE(state->pasteNotice().isEmpty());
  state->stopScanning();
  state->startScanning();
  EXPECT_TRUE(state->pasteNotice().isEmpty()) << "the notice belongs to one visit of the sheet";
}

TEST_F(Pairing, AnAnswerAfterTheScreenIsGoneIsDropped) {
  state->useCode(QStringLiteral("code"));
  state.reset();
  finish();
}

TEST_F(Pairing, TheInstructionNamesCommandAndHost) {
  EXPECT_EQ(state->instruction(), QStringLiteral("Run varnel pair on your computer, then scan the one-time code."));
  EXPECT_EQ(QString(state->instructionMarkup()).remove(QStringLiteral("<code>")).remove(QStringLiteral("</code>")),
            state->instruction());
}

}  // namespace
}  // namespace varnel::screens
