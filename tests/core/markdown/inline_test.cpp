// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/inline.h"

#include <gtest/gtest.h>

#include "tests/core/markdown/inline_notation.h"

namespace varnel::markdown {
namespace {

struct Case {
  std::string source;
  std::string runs;
};

void expectAll(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(notation(inlineMarkdown(c.source)), c.runs) << c.source;
}

TEST(Inline, KeepsTextAsItStands) {
  expectAll({
      {"", ""},
      {"plain", "plain"},
      {"  two  spaces \n\tand a line ", "  two  spaces \n\tand a line "},
      {"# no\n- list\n> quote\n1. x\n---\n    code", "# no\n- list\n> quote\n1. x\n---\n    code"},
      {"a\r\nb", "a\r\nb"},
      {"* a * b_c_d 2*3", "* a * b_c_d 2*3"},
      {"[a] [b][c] [d]: /url ![e]", "[a] [b][c] [d]: /url ![e]"},
      {"https://example.org a@b.c", "https://example.org a@b.c"},
  });
}

TEST(Inline, PairsTheMarksOfStyles) {
  expectAll({
      {"*a* _b_", "e{a}{ }e{b}"},
      {"**a** __b__", "s{a}{ }s{b}"},
      {"~~a~~ ~b~ ~~~c~~~", "~{a}{ }~{b}{ ~~~c~~~}"},
      {"***a*** **b *c***", "es{a}{ }s{b }es{c}"},
      {"*a**b*", "e{a**b}"},
      {"*a **b** c*", "e{a }es{b}e{ c}"},
      {"**a*", "{*}e{a}"},
      {"*a**", "e{a}{*}"},
      {"*a _b* c_", "e{a _b}{ c_}"},
      {"~~a ~b c~~", "~{a ~b c}"},
      {"~~a **b~~ c**", "~{a **b}{ c**}"},
      {"a*b*c a_b_c", "{a}e{b}{c a_b_c}"},
      {"*a*b*", "e{a}{b*}"},
      {"*a\n\nb*", "e{a\n\nb}"},
      {"**变更**了", "s{变更}{了}"},
      {"*\u00a0a*", "*\u00a0a*"},
      {"**€5** x**€5**", "s{€5}{ x**€5**}"},
      {"**a****b** ~~c~~**d**", "s{a****b}{ }~{c}s{d}"},
  });
}

TEST(Inline, TakesCodeBeforeEverythingElse) {
  expectAll({
      {"`a` b", "c{a}{ b}"},
      {"`` ` ``", "c{`}"},
      {"` `` `", "c{``}"},
      {"`  `", "c{  }"},
      {"`a\n  b`", "c{a\n  b}"},
      {"`\\`", "c{\\}"},
      {"`*a*` *`b`*", "c{*a*}{ }ec{b}"},
      {"*a `*`", "{*a }c{*}"},
      {"`a", "`a"},
      {"``a`", "``a`"},
      {"\\``a`", "{`}c{a}"},
      {"`&amp;`", "c{&amp;}"},
      {"[a `](b)`", "{[a }c{](b)}"},
  });
}

TEST(Inline, LeadsLinksWhereTheirAuthorSays) {
  expectAll({
      {"[a](b)", "{a}(b)"},
      {"[a](<b c> \"title\") [d]( e 'f' )", "{a}(b c){ }{d}(e)"},
      {"[a]()", "{a}()"},
      {"[](b)", ""},
      {"[a](b(c)d) [a](b\\)) [a](b(c)", "{a}(b(c)d){ }{a}(b)){ [a](b(c)}"},
      {"[a](b c)", "[a](b c)"},
      {"[a](b&amp;c%20ä)", "{a}(b&c%20ä)"},
      {"[*a* b](c)", "e{a}(c){ b}(c)"},
      {"*[a](b)* [`a`](b)", "e{a}(b){ }c{a}(b)"},
      {"[a [b](c) d](e)", "{[a }{b}(c){ d](e)}"},
      {"*a [b* c](d)", "{*a }{b* c}(d)"},
      {"[a](b)[c](b)", "{ac}(b)"},
      {"[a](b)[c](d)", "{a}(b){c}(d)"},
      {"\\[a](b)", "[a](b)"},
      {"[a] (b)", "[a] (b)"},
      {"[a](b\n\"t\ni\")", "{a}(b)"},
      {"<https://a.b/?c=*d*> <x@y.zz>", "{https://a.b/?c=*d*}(https://a.b/?c=*d*){ }{x@y.zz}(mailto:x@y.zz)"},
      {"<https://a b>", "<https://a b>"},
  });
}

TEST(Inline, ShowsTheTextOfImages) {
  expectAll({
      {"![a](b)", "a"},
      {"x ![*a* `b` [c](d)](e) y", "x a b c y"},
      {"**![a](b)**", "s{a}"},
      {"[![a](b)](c)", "{a}(c)"},
      {"![[a](b)", "{![}{a}(b)"},
      {"![](b)", ""},
      {"\\![a](b)", "{!}{a}(b)"},
  });
}

TEST(Inline, LeavesHtmlAsItIs) {
  expectAll({
      {"<b>*a*</b>", "{<b>}e{a}{</b>}"},
      {R"(<a href="*">*)", R"(<a href="*">*)"},
      {"<a href='&amp;' b=c  d\n/> &amp;", "<a href='&amp;' b=c  d\n/> &"},
      {"<!-- *a* --> <? *b* ?> <!X *c*> <![CDATA[*d*]]>", "<!-- *a* --> <? *b* ?> <!X *c*> <![CDATA[*d*]]>"},
      {"<!--> *a* -->", "{<!--> }e{a}{ -->}"},
      {"<1> *a*", "{<1> }e{a}"},
      {R"(<a b="> *c*)", R"({<a b="> }e{c})"},
      {"<script>alert(1)</script>", "<script>alert(1)</script>"},
  });
}

TEST(Inline, ResolvesEscapesAndEntities) {
  expectAll({
      {"\\*a\\* \\a \\\\ \\", "*a* \\a \\ \\"},
      {"a\\\nb", "a\nb"},
      {"&amp;&#42;a&#x2A; &ouml;&ngE;", "&*a* ö\u2267\u0338"},
      {"&nope; &amp &#; &#x; &#12345678; &#xD800;", "&nope; &amp &#; &#x; &#12345678; \uFFFD"},
      {"&#0;&#10;", "\uFFFD\n"},
      {"\\&amp;", "&amp;"},
      {"&CounterClockwiseContourIntegral;&zwnj;", "\u2233\u200c"},
  });
}

TEST(Inline, StaysLinearOnHostileText) {
  const auto many = [](std::string_view unit, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += unit;
    return text;
  };
  // Each kept a quadratic parser busy for minutes. What comes out is the text with some of its marks gone.
  constexpr std::size_t kCount = 200'000;
  for (const std::string_view unit : {"*",        "_",
                                      "~",        "[",
                                      "]",        "![",
                                      "`",        "<",
                                      "&",        "\\",
                                      "*a ",      "_a",
                                      "*a_",      "**a_b~c",
                                      "a**b_c* ", "[a](",
                                      "[a](b",    "[a](b)",
                                      "![[](a)",  "[*_",
                                      "*_]",      "a](b)",
                                      "<a b=\"",  "<a b='<a b=\"",
                                      "<!--",     "<!A",
                                      "<?",       "<![CDATA[",
                                      "`a``",     "&amp;",
                                      "&#x",      "[a](<",
                                      "[a](b '",  "[a](b \"c\" ",
                                      "[a](b (",  "\\\n",
                                      "<a@",      "<aa:"}) {
    const std::string text = many(unit, kCount);
    std::size_t size = 0;
    for (const InlineRun& run : inlineMarkdown(text)) size += run.text.size();
    EXPECT_LE(size, text.size());
  }
  EXPECT_TRUE(notation(inlineMarkdown(many("[", kCount) + "a" + many("](b)", kCount))) ==
              "{" + many("[", kCount - 1) + "}{a}(b){" + many("](b)", kCount - 1) + "}");
  EXPECT_TRUE(notation(inlineMarkdown(many("*a ", kCount) + many(" b*", kCount))) ==
              "e{" + many("a ", kCount) + many(" b", kCount) + "}");
  std::string ticks;
  for (std::size_t length = 1; length < 3'000; ++length) ticks += std::string(length, '`') + " ";
  EXPECT_TRUE(notation(inlineMarkdown(ticks)) == ticks);
}

}  // namespace
}  // namespace varnel::markdown
