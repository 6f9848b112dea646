// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/transcript_state.h"

#include "tests/app/screens/session/session_fixture.h"

namespace varnel::screens {
namespace {

class Transcript : public SessionTest {
 protected:
  struct Jump {
    int row;
    TranscriptState::Alignment alignment;
    bool animated;
    bool operator==(const Jump&) const = default;
  };
  using enum TranscriptState::Alignment;

  /// "1u" is a message of the user, "2a" a reply, "3t" a tool.
  static std::vector<std::string> items(std::initializer_list<std::string> list) {
    std::vector<std::string> result;
    for (const std::string& each : list) {
      const std::string id = each.substr(0, each.size() - 1);
      if (each.back() == 't') {
        result.push_back(R"({"id":")" + id + R"(","type":"webSearch","timestamp":1})");
      } else {
        result.push_back(answers::item(id, each.back() == 'u' ? "user" : "assistant", "text " + id));
      }
    }
    return result;
  }
  void show(std::initializer_list<std::string> list) {
    serve(session(false), detail(items(list), session(false)));
    if (!state) {
      make();
      QObject::connect(state->transcript(), &TranscriptState::scrollRequested, state.get(),
                       [this](int row, TranscriptState::Alignment alignment, bool animated) {
                         jumps.push_back({row, alignment, animated});
                       });
      ASSERT_TRUE(spinUntil([this] { return state->settings()->isReady(); }));
    } else {
      support::await(model->loadSession("s"));
    }
    settle();
  }
  [[nodiscard]] std::string read() const { return model->lastReadItemID("s").value_or("none"); }

  std::vector<Jump> jumps;
};

TEST_F(Transcript, OpensAtTheEndAndIsReadThen) {
  show({"1u", "2a", "3t", "4t"});
  EXPECT_THAT(jumps, ElementsAre(Jump{2, Bottom, false}));
  EXPECT_EQ(read(), "4");
  EXPECT_FALSE(state->transcript()->isJumping());
}

TEST_F(Transcript, OpensAtTheFirstUnreadReply) {
  model->markRead("s", "1");
  show({"1u", "2t", "3a", "4a"});
  EXPECT_THAT(jumps, ElementsAre(Jump{2, Top, false}));
}

TEST_F(Transcript, OpensAtTheSearchedItemAndForgetsIt) {
  model->markRead("s", "1");
  model->selectTranscriptItem("4");
  show({"1u", "2t", "3a", "4a"});
  EXPECT_THAT(jumps, ElementsAre(Jump{3, Center, false}));
  EXPECT_EQ(model->selectedTranscriptItemId(), std::nullopt);
}

TEST_F(Transcript, AnItemInAGroupOrNotThereLeadsNowhereOrIsKept) {
  model->selectTranscriptItem("2");
  show({"1t", "2t", "3a"});
  EXPECT_TRUE(jumps.empty()) << "it has no row of its own";
  EXPECT_EQ(model->selectedTranscriptItemId(), std::nullopt);
  state.reset();
  model->selectTranscriptItem("gone");
  show({"1t", "2t", "3a"});
  EXPECT_EQ(model->selectedTranscriptItemId(), "gone");
  EXPECT_THAT(jumps, ElementsAre(Jump{1, Bottom, false}));
}

TEST_F(Transcript, FollowsNewRepliesAndOwnMessagesAndNothingElse) {
  show({"1u", "2a"});
  jumps.clear();
  show({"1u", "2a", "3t", "4u"});
  EXPECT_TRUE(jumps.empty());
  EXPECT_EQ(read(), "2") << "only what was scrolled to counts as read";
  show({"1u", "2a", "3t", "4u", "5a", "6a"});
  EXPECT_THAT(jumps, ElementsAre(Jump{4, Top, true}));
  EXPECT_EQ(read(), "6");
  jumps.clear();
  bridge.expect("POST", model::kMessages, Script::silence());
  composer().setMessage(QStringLiteral("mine"));
  composer().send();
  EXPECT_TRUE(state->transcript()->isJumping());
  settle();
  EXPECT_THAT(jumps, ElementsAre(Jump{6, Bottom, true}));
  show({"1u", "2a", "3t", "4u", "5a", "6a"});
  EXPECT_EQ(jumps.size(), 1U) << "the same list is no change";
}

TEST_F(Transcript, IsReadWhenItCloses) {
  show({"1u"});
  show({"1u", "2t"});
  EXPECT_EQ(read(), "1");
  state.reset();
  EXPECT_EQ(read(), "2");
}

TEST_F(Transcript, CountsTheRepliesBelowWhatIsSeen) {
  show({"1u", "2a", "3t", "4a", "5u", "6a"});
  state->transcript()->setLastVisibleRow(1);
  EXPECT_EQ(state->transcript()->repliesBelow(), 2);
  state->transcript()->setLastVisibleRow(5);
  EXPECT_EQ(state->transcript()->repliesBelow(), 0);
  show({"1u", "2a", "3t", "4a", "5u", "6a", "7a"});
  EXPECT_EQ(state->transcript()->repliesBelow(), 1);
}

TEST_F(Transcript, AGroupStaysUnfoldedWhileItGrows) {
  show({"1t"});
  state->transcript()->toggleGroup(QStringLiteral("tools-1"));
  show({"1t", "2t"});
  EXPECT_THAT(column(state->transcript()->rows(), "expanded"), ElementsAre("true"));
  state->transcript()->toggleGroup(QStringLiteral("tools-1"));
  EXPECT_THAT(column(state->transcript()->rows(), "expanded"), ElementsAre("false"));
}

}  // namespace
}  // namespace varnel::screens
