// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/parse_blocks.h"

#include <gtest/gtest.h>
#include <utf8proc.h>

#include <random>

#include "core/base/byte_positions.h"
#include "core/base/text.h"
#include "core/markdown/line_rules.h"
#include "tests/core/markdown/naive_blocks.h"

namespace varnel::markdown {
namespace {

using Blocks = std::vector<TranscriptMarkdownBlock>;

struct Case {
  std::string source;
  Blocks blocks;
};

void expectAll(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(parseTranscriptMarkdown(c.source), c.blocks) << c.source;
}

TEST(ParseBlocks, JoinsOrdinaryLinesIntoParagraphs) {
  expectAll({
      {"", {}},
      {"\n\n", {}},
      {" \t\u00a0\u3000\n", {}},
      {"a\nb", {Paragraph{"a\nb"}}},
      {"a\n\nb\n", {Paragraph{"a"}, Paragraph{"b"}}},
      {"a\r\nb\rc", {Paragraph{"a\nb\nc"}}},
      {"a\r\r\nb", {Paragraph{"a"}, Paragraph{"b"}}},
      {"  indented text  ", {Paragraph{"  indented text  "}}},
      {"\f", {Paragraph{"\f"}}},
      {"\u2028", {Paragraph{"\u2028"}}},
  });
}

TEST(ParseBlocks, TakesCodeVerbatimUpToItsOwnFence) {
  expectAll({
      {"```\nx\n\ny", {Code{std::nullopt, "x\n\ny"}}},
      {"text\n```py\nprint(1)\n```\nmore", {Paragraph{"text"}, Code{"py", "print(1)"}, Paragraph{"more"}}},
      {"~~~\n```\n~~~", {Code{std::nullopt, "```"}}},
      {"```\n```", {Code{std::nullopt, ""}}},
      {"```", {Code{std::nullopt, ""}}},
      {"````\n  a \n   ```` trailing\nb", {Code{"`", "  a "}, Paragraph{"b"}}},
      {"```  c++  \n# no\n```", {Code{"c++", "# no"}}},
      {"```\n\n```", {Code{std::nullopt, ""}}},
      {"```\n\n\n```", {Code{std::nullopt, "\n"}}},
      {"``\u0060\u0301", {Paragraph{"``\u0060\u0301"}}},
  });
}

TEST(ParseBlocks, KnowsHeadingsAndRules) {
  expectAll({
      {"### Three", {Heading{3, "Three"}}},
      {"##  Title ##", {Heading{2, " Title ##"}}},
      {"####### seven", {Paragraph{"####### seven"}}},
      {"#tag", {Paragraph{"#tag"}}},
      {"#\ttab", {Paragraph{"#\ttab"}}},
      {"# ", {Paragraph{"# "}}},
      {"# \u0301x", {Paragraph{"# \u0301x"}}},
      {"text\n---", {Paragraph{"text"}, Rule{}}},
      {"- - -", {Rule{}}},
      {" * * * ", {Rule{}}},
      {"___", {Rule{}}},
      {"--", {Paragraph{"--"}}},
      {"-*-", {Paragraph{"-*-"}}},
      {"-\f-\u2028-\u0085", {Rule{}}},
      {"--\u0301-", {Paragraph{"--\u0301-"}}},
  });
}

TEST(ParseBlocks, NeedsASeparatorForATable) {
  expectAll({
      {"| A | B |\n|---|---|\n| 1 | 2 |\n| 3 |\nafter", {Table{{"A", "B"}, {{"1", "2"}, {"3"}}}, Paragraph{"after"}}},
      {"A | B\n--|--", {Paragraph{"A | B\n--|--"}}},
      {"a|b\n :---: | --- \n", {Table{{"a", "b"}, {}}}},
      {"a|b\n-\f-\u2003-:|---", {Table{{"a", "b"}, {}}}},
      {"| a || b |\n---\n|x||", {Table{{"a", "", "b"}, {{"x", ""}}}}},
      {"text\na|b\n---|---\n# h|x", {Paragraph{"text"}, Table{{"a", "b"}, {{"# h", "x"}}}}},
      {"a|b", {Paragraph{"a|b"}}},
      {"a|\u0301b\n---", {Paragraph{"a|\u0301b"}, Rule{}}},
      {"|\n---", {Table{{}, {}}}},
  });
}

TEST(ParseBlocks, TakesQuotesAndLists) {
  const auto bullet = [](std::string text, int indent = 0) { return TranscriptListItem{text, indent, std::nullopt}; };
  const auto numbered = [](int number, std::string text) { return TranscriptListItem{text, 0, number}; };
  expectAll({
      {"> one\n>two\nthree", {Quote{"one\ntwo"}, Paragraph{"three"}}},
      {">> text\n>\n > # x ", {Quote{"> text\n\n# x"}}},
      {"- a\n  - b\n- c", {UnorderedList{{bullet("a"), bullet("b", 1), bullet("c")}}}},
      {"+ x\n*  y", {UnorderedList{{bullet("x"), bullet(" y")}}}},
      {"          - deep", {UnorderedList{{bullet("deep", 4)}}}},
      {"\t- tab", {UnorderedList{{bullet("tab")}}}},
      {"- 1. x\n1. y", {UnorderedList{{bullet("1. x")}}, OrderedList{{numbered(1, "y")}}}},
      {"1. a\n2) b\n\n3. c", {OrderedList{{numbered(1, "a"), numbered(2, "b")}}, OrderedList{{numbered(3, "c")}}}},
      {"-1. x\n+7.  y", {OrderedList{{numbered(-1, "x"), numbered(7, " y")}}}},
      {"- ", {Paragraph{"- "}}},
      {"1.foo bar", {Paragraph{"1.foo bar"}}},
      {"1. ", {Paragraph{"1. "}}},
      {"+-1. x", {Paragraph{"+-1. x"}}},
      {"99999999999999999999. x", {Paragraph{"99999999999999999999. x"}}},
      {"- \u0301x", {Paragraph{"- \u0301x"}}},
  });
}

TEST(LineRules, CountTheSpacesOfAListsIndent) {
  EXPECT_EQ(listIndent("   x"), 1);
  EXPECT_EQ(listIndent("  \t  x"), 1);
  EXPECT_EQ(listIndent("    \u0301x"), 1);
  EXPECT_EQ(listIndent("          x"), 4);
  std::vector<std::string_view> cells;
  EXPECT_FALSE(appendTableCells("", cells));
  EXPECT_FALSE(appendTableCells("a", cells));
  EXPECT_TRUE(appendTableCells("|", cells));
  EXPECT_TRUE(cells.empty());
  EXPECT_TRUE(appendTableCells("||", cells));
  EXPECT_EQ(cells.size(), 1U);
}

TEST(ParseBlocks, AgreesWithANaiveReadingOfItsRules) {
  const std::vector<std::string> pieces = {"\n",
                                           "\n",
                                           "\n",
                                           "\r\n",
                                           "\r",
                                           " ",
                                           "  ",
                                           "\t",
                                           "\u00a0",
                                           "\u2003",
                                           "\f",
                                           "\u2028",
                                           "\u0301",
                                           "```",
                                           "`",
                                           "~~~",
                                           "#",
                                           "# ",
                                           "-",
                                           "---",
                                           "- ",
                                           "*",
                                           "* ",
                                           "_",
                                           "___",
                                           "+ ",
                                           "|",
                                           "|",
                                           "|---|-",
                                           ":",
                                           ">",
                                           "> ",
                                           "1",
                                           ". ",
                                           ") ",
                                           "1. ",
                                           "-2) ",
                                           "a",
                                           "b c",
                                           "é",
                                           "变",
                                           "\u0600",
                                           "\xff",
                                           "\xe2",
                                           "👩‍💻",
                                           "text\n",
                                           "a|b\n---|---\n"};
  std::mt19937 random(1);
  for (int round = 0; round < 20'000; ++round) {
    std::string source;
    for (auto count = random() % 24; count > 0; --count) source += pieces[random() % pieces.size()];
    ASSERT_EQ(parseTranscriptMarkdown(source), naive::Parser(source).parse()) << source;
  }
}

TEST(ParseBlocks, StaysLinearOnHostileText) {
  const auto many = [](std::string_view line, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += line;
    return text;
  };
  // Each of these took a quadratic parser minutes.
  for (const std::string& text :
       {many(">", 100'000), many("> ", 1'000'000), many("```\n", 333'333), many("|", 1'000'000), many("|\n", 500'000),
        many("|-\n", 500'000), many("- ", 1'000'000), many("a", 50'000'000), many("\u0301", 1'000'000),
        many("1", 1'000'000)}) {
    const auto blocks = parseTranscriptMarkdown(text);
    EXPECT_FALSE(blocks.empty());
  }
}

TEST(BytePositions, AreWhereTheByteStands) {
  std::mt19937 random(1);
  base::BytePositions positions;
  for (const std::size_t size : {0U, 1U, 63U, 64U, 65U, 200U, 4096U, 4097U, 10'000U, 700U}) {
    for (const unsigned rarity : {1U, 2U, 60U, 3000U}) {
      std::string text(size, 'a');
      std::vector<std::size_t> expected;
      for (std::size_t at = 0; at < size; ++at) {
        if (random() % rarity != 0) continue;
        text[at] = '\n';
        expected.push_back(at);
      }
      positions.find(text, '\n');
      EXPECT_TRUE(std::ranges::equal(positions.all(), expected)) << size << " bytes, one of " << rarity;
    }
  }
}

TEST(Trim, KnowsTheSpaceSeparatorsOfUnicode) {
  for (char32_t c = 0; c < 0x110000; ++c) {
    const bool separator = utf8proc_category(static_cast<utf8proc_int32_t>(c)) == UTF8PROC_CATEGORY_ZS;
    EXPECT_EQ(base::isHorizontalSpace(c), separator || c == U'\t') << static_cast<unsigned>(c);
    if (c < 0x80 || (c >= 0xD800 && c < 0xE000)) continue;
    const std::string text = base::utf8(c);
    std::string inside = "a";
    inside.append(text).append("a");
    std::string outside = text;
    outside.append("a").append(text);
    EXPECT_EQ(base::trim(inside), inside);
    EXPECT_EQ(base::trim(outside), separator ? "a" : outside) << static_cast<unsigned>(c);
  }
}

TEST(Trim, RemovesHorizontalSpaceOnly) {
  EXPECT_EQ(base::trim("\u2003 \ta b\u00a0 "), "a b");
  EXPECT_EQ(base::trim("\f a\n"), "\f a\n");
  EXPECT_EQ(base::trim("\u3000"), "");
  EXPECT_EQ(base::trim("\xff \x80 "), "\xff \x80");
}

}  // namespace
}  // namespace varnel::markdown
