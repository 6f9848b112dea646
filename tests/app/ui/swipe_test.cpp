// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/swipe.h"

#include <gtest/gtest.h>

namespace varnel::ui {
namespace {

TEST(Swipe, OpensTheActionsThatWereHalfBared) {
  struct Case {
    double offset;
    bool leadingFull;
    bool trailingFull;
    Swipe::Outcome outcome;
  };
  // A row of 360 with actions of 88 in front and 176 behind.
  for (const Case& each : {
           Case{0, true, false, Swipe::Closed},
           Case{43, true, false, Swipe::Closed},
           Case{44, true, false, Swipe::LeadingOpen},
           Case{215, true, false, Swipe::LeadingOpen},
           Case{216, true, false, Swipe::LeadingFull},
           Case{360, false, false, Swipe::LeadingOpen},
           Case{-87, true, false, Swipe::Closed},
           Case{-88, true, false, Swipe::TrailingOpen},
           Case{-360, true, false, Swipe::TrailingOpen},
           Case{-216, false, true, Swipe::TrailingFull},
       }) {
    EXPECT_EQ(Swipe::outcome(each.offset, 360, 88, 176, each.leadingFull, each.trailingFull), each.outcome)
        << each.offset;
  }
  EXPECT_EQ(Swipe::outcome(300, 360, 0, 88, true, true), Swipe::Closed) << "there is nothing on that side";
}

TEST(Swipe, FollowsTheFingerAsFarAsThereIsSomethingToDo) {
  EXPECT_DOUBLE_EQ(Swipe::followed(300, 88, 176, true, false), 300);
  EXPECT_DOUBLE_EQ(Swipe::followed(-276, 88, 176, true, false), -196);
  EXPECT_DOUBLE_EQ(Swipe::followed(-300, 88, 0, true, true), 0);
}

}  // namespace
}  // namespace varnel::ui
