// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/conversation_notifications.h"

#include <gtest/gtest.h>

namespace varnel::live {
namespace {

using wire::CodexTurnState;
using Actions = std::vector<NotificationAction>;

const std::string kSlot = "varnel-conversation-a";
const Actions kNothing;
const Actions kWithdrawn{WithdrawNotification{kSlot}};

PostNotification posted(NotificationKind kind, const std::string& title) {
  return {.slot = kSlot, .kind = kind, .title = title, .body = "project", .link = "varnel://session/a"};
}
const Actions kNeedsInput{posted(NotificationKind::NeedsInput, "Codex needs input")};
const Actions kDone{posted(NotificationKind::Done, "Codex is done")};
const Actions kFailed{posted(NotificationKind::Failed, "Codex stopped with an error")};

class ConversationNotificationsTest : public ::testing::Test {
 protected:
  /// What follows when the one conversation is in that state.
  Actions at(CodexTurnState state, const std::string& turn = "t") {
    now.sessions = {{.id = "a", .project = "project", .state = state, .latestCommentary = "secret plan"}};
    if (!turn.empty()) now.sessions[0].currentTurnId = turn;
    return notifications.update(now, choice);
  }
  void restart() { notifications = ConversationNotifications(notifications.memory()); }

  ConversationNotifications notifications;
  ConversationsNow now;
  NotificationChoice choice;
};

TEST_F(ConversationNotificationsTest, TellOnceOfATurnThatNeedsInputAndWithdrawItWhenAnswered) {
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNeedsInput) << "also at first sight: it may have waited for hours";
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNothing);
  EXPECT_EQ(at(CodexTurnState::Working), kWithdrawn);
  EXPECT_EQ(at(CodexTurnState::Working), kNothing);
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNeedsInput);
  EXPECT_EQ(at(CodexTurnState::NeedsInput, "t2"), kNeedsInput) << "answered and asked anew between two looks";
}

TEST_F(ConversationNotificationsTest, TellOfEachFurtherRequestOfTheTurn) {
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNeedsInput);
  now.openRequests["a"] = {"r1"};
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNothing) << "that is the request that was told of";
  now.openRequests["a"] = {"r1", "r2"};
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNeedsInput);
  now.openRequests["a"] = {"r2"};
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNothing);
  now.openRequests["a"] = {};
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNothing);
  now.openRequests["a"] = {"r\n3"};
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNeedsInput);
  restart();
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNothing);
}

TEST_F(ConversationNotificationsTest, TellOfAnEndThatFollowedAStart) {
  EXPECT_EQ(at(CodexTurnState::Done, ""), kNothing) << "done long ago";
  EXPECT_EQ(at(CodexTurnState::Working), kNothing);
  EXPECT_EQ(at(CodexTurnState::Done, ""), kDone);
  EXPECT_EQ(at(CodexTurnState::Done, ""), kNothing);
  EXPECT_EQ(at(CodexTurnState::Working), kWithdrawn);
  EXPECT_EQ(at(CodexTurnState::Failed, ""), kFailed);
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNeedsInput) << "in the same slot";
  EXPECT_EQ(at(CodexTurnState::Interrupted), kWithdrawn);
  EXPECT_EQ(at(CodexTurnState::Stale), kNothing);
}

TEST_F(ConversationNotificationsTest, GoOnInTheNextRun) {
  at(CodexTurnState::Working);
  restart();
  EXPECT_EQ(at(CodexTurnState::Done, ""), kDone) << "it ended while the application did not run";
  restart();
  EXPECT_EQ(at(CodexTurnState::Done, ""), kNothing);
  EXPECT_EQ(at(CodexTurnState::Working), kWithdrawn) << "of the earlier run";
  at(CodexTurnState::NeedsInput);
  restart();
  EXPECT_EQ(notifications.update({}, choice), kWithdrawn) << "it is gone from the list";
  EXPECT_TRUE(notifications.memory().empty());
}

TEST_F(ConversationNotificationsTest, MakeNothingOfAMemoryThatMakesNoSense) {
  for (const std::string text : {"", "done", "odd\nposted\nt\n", "working\n\n%zz\n"}) {
    notifications = ConversationNotifications({{"a", text}});
    EXPECT_EQ(at(CodexTurnState::Done, ""), kNothing) << text;
  }
}

TEST_F(ConversationNotificationsTest, AreSilentAboutWhatIsInViewOrSwitchedOff) {
  now.inView = "a";
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNothing);
  now.inView = "b";
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNothing) << "it was seen";
  at(CodexTurnState::Working);
  EXPECT_EQ(at(CodexTurnState::Done, ""), kDone);
  now.inView = "a";
  EXPECT_EQ(at(CodexTurnState::Done, ""), kWithdrawn) << "opened";

  now.inView.reset();
  at(CodexTurnState::Working);
  choice.done = false;
  EXPECT_EQ(at(CodexTurnState::Done, ""), kNothing);
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNeedsInput);
  choice.needsInput = false;
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kWithdrawn);
  choice.failed = false;
  EXPECT_EQ(at(CodexTurnState::Failed, ""), kNothing);
}

TEST_F(ConversationNotificationsTest, AreAllWithdrawnWhenThePairingIsForgotten) {
  at(CodexTurnState::NeedsInput);
  EXPECT_EQ(notifications.clear(), kWithdrawn);
  EXPECT_EQ(notifications.clear(), kNothing);
  EXPECT_EQ(at(CodexTurnState::NeedsInput), kNeedsInput);
}

TEST_F(ConversationNotificationsTest, ShowTheProjectOnOneLineAndNothingOfTheConversation) {
  // NOLINTNEXTLINE(misc-misleading-bidirectional): a sign that turns the text around is what is tested
  const std::string project = " my\n\tproject\u202E\u2066 \x07x";
  now.sessions = {{.id = "a/b c",
                   .name = "secret name",
                   .project = project,
                   .state = CodexTurnState::NeedsInput,
                   .latestCommentary = "secret plan"}};
  const auto actions = notifications.update(now, choice);
  ASSERT_EQ(actions.size(), 1U);
  const auto& post = std::get<PostNotification>(actions[0]);
  EXPECT_EQ(post.body, "my project x");
  EXPECT_EQ(post.link, "varnel://session/a%2Fb%20c");
  EXPECT_EQ((post.title + post.body + post.slot).find("secret"), std::string::npos);
}

}  // namespace
}  // namespace varnel::live
