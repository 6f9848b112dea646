// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/conversation_notifier.h"

#include <gtest/gtest.h>

#include "tests/support/fake_platform.h"
#include "tests/support/waiting.h"

namespace varnel::device {
namespace {

using platform::Notification;
using support::spinUntil;
using wire::CodexTurnState;
using Lines = std::vector<std::string>;

const std::string kSlot = "varnel-conversation-a";

class ConversationNotifierTest : public ::testing::Test {
 protected:
  void tell(CodexTurnState state) {
    notifier->update({.sessions = {{.id = "a", .project = "project", .state = state, .latestCommentary = "secret"}}});
  }
  /// Waits for the posts and withdrawals so far.
  bool did(const Lines& lines) {
    return spinUntil([&] { return notifications.log.size() >= lines.size(); }) && notifications.log == lines;
  }
  void restart() { notifier = std::make_unique<ConversationNotifier>(notifications, store); }

  support::FakeNotificationCentre notifications;
  support::MemoryDefaultsStore store;
  std::unique_ptr<ConversationNotifier> notifier = std::make_unique<ConversationNotifier>(notifications, store);
};

TEST_F(ConversationNotifierTest, ShowsByKindHowUrgentItIs) {
  tell(CodexTurnState::NeedsInput);
  ASSERT_TRUE(did({"post " + kSlot}));
  EXPECT_EQ(notifications.shown.at(kSlot), (Notification{.title = "Codex needs input",
                                                         .body = "project",
                                                         .urgency = Notification::Urgency::Critical,
                                                         .sound = true,
                                                         .link = "varnel://session/a"}));
  tell(CodexTurnState::Failed);
  ASSERT_TRUE(did({"post " + kSlot, "post " + kSlot}));
  EXPECT_EQ(notifications.shown.at(kSlot).urgency, Notification::Urgency::Normal);
  tell(CodexTurnState::Done);
  ASSERT_TRUE(spinUntil([&] { return notifications.log.size() == 3; }));
  EXPECT_EQ(notifications.shown.at(kSlot).urgency, Notification::Urgency::Low);
  EXPECT_FALSE(notifications.shown.at(kSlot).sound);
}

TEST_F(ConversationNotifierTest, OverlooksWhatLastsAMoment) {
  tell(CodexTurnState::NeedsInput);
  tell(CodexTurnState::Working);
  support::spinFor(std::chrono::milliseconds(300));
  EXPECT_TRUE(notifications.log.empty());
}

TEST_F(ConversationNotifierTest, RemembersAcrossRunsAndForgetsWithThePairing) {
  tell(CodexTurnState::NeedsInput);
  ASSERT_TRUE(did({"post " + kSlot}));
  restart();
  tell(CodexTurnState::Working);
  ASSERT_TRUE(did({"post " + kSlot, "remove " + kSlot}));
  tell(CodexTurnState::NeedsInput);
  ASSERT_TRUE(spinUntil([&] { return notifications.log.size() == 3; }));
  const int writes = store.writes;
  tell(CodexTurnState::NeedsInput);
  support::spinFor(std::chrono::milliseconds(300));
  EXPECT_EQ(store.writes, writes) << "nothing changed";
  tell(CodexTurnState::Done);
  notifier->clear();
  support::spinFor(std::chrono::milliseconds(300));
  EXPECT_EQ(notifications.log.back(), "remove " + kSlot);
  EXPECT_TRUE(store.values.empty());
}

TEST_F(ConversationNotifierTest, GoesByTheSettings) {
  ASSERT_TRUE(store.set(kNotifyNeedsInputKey, false));
  tell(CodexTurnState::NeedsInput);
  support::spinFor(std::chrono::milliseconds(300));
  EXPECT_TRUE(notifications.log.empty());
  tell(CodexTurnState::Done);
  ASSERT_TRUE(did({"post " + kSlot}));
  ASSERT_TRUE(store.set(kNotifyDoneKey, false));
  tell(CodexTurnState::Done);
  EXPECT_TRUE(did({"post " + kSlot, "remove " + kSlot}));
}

}  // namespace
}  // namespace varnel::device
