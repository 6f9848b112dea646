// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/link.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace varnel::live {
namespace {

using testing::Optional;

std::optional<std::string> sessionOf(std::string_view url) {
  const auto link = parseLink(url);
  EXPECT_TRUE(link) << url;
  return link ? link->sessionId : std::nullopt;
}

TEST(Link, NamesAConversationByItsFirstSegment) {
  EXPECT_THAT(sessionOf("varnel://session/abc"), Optional(std::string("abc")));
  EXPECT_THAT(sessionOf("varnel://session/abc/def?x=1#y"), Optional(std::string("abc")));
  EXPECT_THAT(sessionOf("varnel://session//abc/"), Optional(std::string("abc")));
  EXPECT_THAT(sessionOf("varnel://session/a%20b%2Fc"), Optional(std::string("a b/c")));
  EXPECT_THAT(sessionOf("varnel://u@session:80/abc"), Optional(std::string("abc")));
}

TEST(Link, MayNameNone) {
  EXPECT_EQ(sessionOf("varnel://session"), std::nullopt);
  EXPECT_EQ(sessionOf("varnel://session/"), std::nullopt);
}

TEST(Link, IsNothingElse) {
  for (const auto* url : {"", "abc", "https://session/abc", "Varnel://session/abc", "varnel://Session/abc",
                          "varnel://sessions/abc", "varnel:session/abc", "varnel:///session/abc", "//session/abc"}) {
    EXPECT_FALSE(parseLink(url)) << url;
  }
}

}  // namespace
}  // namespace varnel::live
