// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "host/agent/demo/demo_conversation.h"
#include "host/agent/demo/library.h"
#include "host/agent/demo/reply_writer.h"
#include "host/agent/demo/script_parser.h"

namespace varnel::agent::demo {
namespace {

TEST(DemoScript, ReadsNestedAnswersAndWhatComesAfterThem) {
  const ScriptFile file = parseScript("x.md",
                                      "name: A name\n"
                                      "@@ turn ago=1h30m state=running\n"
                                      "@@ ask command\nMay I?\n"
                                      "@@ command exit=3\nls -l\nno\n"
                                      "@@ accepted\n@@ answer\nyes\n"
                                      "@@ declined\n@@ answer\nno\n"
                                      "@@ end\n"
                                      "@@ edit\n=== update a.txt\n@@ -1,2 +1,2 @@\n-a\n+b\n"
                                      "@@ say\nafter\n");
  EXPECT_EQ(file.get("name"), "A name");
  ASSERT_EQ(file.turns.size(), 1U);
  EXPECT_EQ(file.turns[0].ago, 5400);
  ASSERT_EQ(file.turns[0].told.size(), 3U);
  const Ask& ask = std::get<Ask>(file.turns[0].told[0].what);
  EXPECT_EQ(ask.params.at("reason"), json::JSONValue("May I?"));
  EXPECT_EQ(ask.subject->title, "ls -l");
  EXPECT_EQ(ask.subject->status, "failed");
  EXPECT_EQ(ask.subject->after.at("aggregatedOutput"), json::JSONValue("no\n"));
  EXPECT_EQ(std::get<Say>(ask.accepted.at(0).what).text, "yes");
  EXPECT_EQ(std::get<Say>(ask.declined.at(0).what).text, "no");
  EXPECT_EQ(std::get<Say>(file.turns[0].told[2].what).text, "after");
}

TEST(DemoScript, AMistakeIsNamedWithItsLine) {
  struct Case {
    const char* text;
    const char* reason;
  };
  for (const Case& bad :
       {Case{"@@ say\nx\n@@ shout\nx\n", "x.md:3: unknown block shout"},
        Case{"@@ plan\nno boxes\n", "x.md:1: a plan without steps"},
        Case{"@@ edit\n=== add\n", "x.md:1: an edit without a path"},
        Case{"@@ tool server=a name=b\n[1]\n", "x.md:1: expected an object"},
        Case{"@@ ask mood\n{}\n@@ end\n", "x.md:1: unknown request mood"},
        Case{"@@ ask question\n{}\n@@ accepted\n@@ say\nx\n", "x.md:1: a request without its @@ end"}}) {
    try {
      parseScript("x.md", bad.text);
      ADD_FAILURE() << "read: " << bad.text;
    } catch (const std::logic_error& error) {
      EXPECT_STREQ(error.what(), bad.reason);
    }
  }
  EXPECT_THROW(parseAgo("5"), std::logic_error);
  EXPECT_THROW(parseAgo("h"), std::logic_error);
  EXPECT_EQ(parseAgo("1d2h"), 93600);
}

TEST(DemoScript, PiecesOfAMessageAreWholeCodePointsAndEndAtItsEnd) {
  for (const std::string& text :
       {std::string("短い文だけれども、空白がどこにもないので、区切りは文字の間に置くしかない。"),
        std::string(900, 'x'), std::string("one two three four five six seven eight")}) {
    std::size_t pieces = 0;
    for (std::size_t at = 0; at < text.size(); ++pieces) {
      const std::size_t end = pieceEnd(text, at);
      ASSERT_GT(end, at);
      ASSERT_TRUE(end == text.size() || (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U);
      at = end;
    }
    EXPECT_LE(pieces, kMostPieces + 1) << text;
  }
}

TEST(DemoScript, ALineOfPlainTextIsTakenFromMarkdown) {
  EXPECT_EQ(plainLine("\n```sh\nls\n```\n## The **test** is `steady`"), "The test is steady");
  EXPECT_EQ(plainLine("| a | b |\n|---|---|\n1. see [the page](https://x.example/a) ~~now~~"), "see the page now");
  EXPECT_EQ(plainLine("> - [x] done"), "done");
  EXPECT_EQ(plainLine(""), "");
  EXPECT_EQ(plainLine("[open"), "[open");
  const std::string cut = plainLine(std::string("é") + std::string(400, 'a'));
  EXPECT_EQ(cut, "é" + std::string(159, 'a') + "…");
}

/// Every final answer that may be given; either branch of every question included.
void collectAnswers(const Script& script, std::vector<std::string>& answers) {
  for (const Step& step : script) {
    if (const auto* say = std::get_if<Say>(&step.what); say != nullptr && say->final) answers.push_back(say->text);
    if (const auto* ask = std::get_if<Ask>(&step.what)) {
      collectAnswers(ask->accepted, answers);
      collectAnswers(ask->declined, answers);
    }
  }
}

TEST(DemoScript, EveryReplyEchoesTheUsersWordsAndLeavesNoPlaceholder) {
  DemoConversation conversation;
  conversation.summary.id = "s";
  conversation.summary.project = "tidepool";
  std::size_t checked = 0;
  std::vector<std::string> words{"hm"};
  for (const ReplyTemplate& reply : library().replies)
    words.insert(words.end(), reply.keywords.begin(), reply.keywords.end());
  for (const std::string& word : words) {
    for (conversation.messages = 0; conversation.messages < 4; ++conversation.messages) {
      const TurnInput input{
          .text = "Zebra " + word + " 42", .preferences = {}, .attachments = {}, .clientMessageId = {}};
      std::vector<std::string> answers;
      collectAnswers(writeReply(7, conversation, input), answers);
      for (const std::string& answer : answers) {
        EXPECT_THAT(answer, testing::HasSubstr(input.text)) << word;
        std::string filled = answer;
        fill(filled, Words{{"answer", "A"}});
        EXPECT_EQ(filled.find("{{"), std::string::npos) << answer;
        ++checked;
      }
    }
  }
  EXPECT_GT(checked, 4 * library().replies.size());
}

TEST(DemoScript, TheWordDecidesAndThePreciserOneWins) {
  DemoConversation conversation;
  conversation.summary.id = "s";
  const auto fails = [&](const std::string& text) {
    const TurnInput input{.text = text, .preferences = {}, .attachments = {}, .clientMessageId = {}};
    const Script script = writeReply(1, conversation, input);
    return std::ranges::any_of(script, [](const Step& step) { return std::holds_alternative<Fail>(step.what); });
  };
  EXPECT_TRUE(fails("Please simulate a failure"));
  EXPECT_TRUE(fails("SIMULATE A FAILURE"));
  EXPECT_FALSE(fails("Why does it fail?"));
}

}  // namespace
}  // namespace varnel::agent::demo
