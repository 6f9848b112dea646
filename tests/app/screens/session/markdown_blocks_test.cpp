// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/markdown/markdown_blocks.h"

#include <gtest/gtest.h>

#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

namespace varnel::screens {
namespace {

const RichTextLook kLook{.linkColor = QStringLiteral("#00f"),
                         .codeBackground = QStringLiteral("#eee"),
                         .codeFamily = QStringLiteral("mono"),
                         .hairline = QStringLiteral("#ccc"),
                         .lineHeight = 110};

TEST(MarkdownBlocks, EveryKindHasItsDelegate) {
  std::string kinds;
  for (const auto& row :
       makeBlockRows("# a\nb\n- c\n1. d\n```js\ne\n```\n> f\n\n| g | h |\n|---|---|\n| 1 |\n\n---", kLook)) {
    kinds += row.kind + " ";
  }
  EXPECT_EQ(kinds, "heading paragraph list list code quote table rule ");
}

TEST(MarkdownBlocks, MarkersAreNumbersAsWrittenAndIndentsAreKept) {
  const auto rows = makeBlockRows("7. x\n    8. y\n", kLook);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].items[0].marker, QStringLiteral("7."));
  EXPECT_EQ(rows[0].items[1].indent, 2);
  EXPECT_EQ(makeBlockRows("* x", kLook)[0].items[0].marker, QStringLiteral("•"));
}

TEST(MarkdownBlocks, NothingOfTheAgentsMarkupGetsThrough) {
  const std::string hostile = "<img src=x onerror=y> & \"q\" \uFFFC [l](http://a/\"onmouseover=x) `<b>`";
  for (const std::string& text :
       {hostile, "# " + hostile, "> " + hostile, "- " + hostile, "| " + hostile + " |\n|---|\n"}) {
    for (const auto& row : makeBlockRows(text, kLook)) {
      for (const QString& html : {row.html, row.items.empty() ? QString() : row.items[0].html}) {
        EXPECT_FALSE(html.contains(QStringLiteral("<img"))) << html.toStdString();
        EXPECT_FALSE(html.contains(QStringLiteral("<b>"))) << html.toStdString();
        EXPECT_FALSE(html.contains(QChar::ObjectReplacementCharacter));
      }
    }
  }
}

TEST(MarkdownBlocks, StylesAndLinksBecomeMarkupOfOurOwn) {
  const auto row = makeBlockRows("a *b* **c** ~~d~~ `e` [f](https://g)\n  h", kLook).at(0);
  EXPECT_EQ(row.plain, QStringLiteral("a b c d e f\n  h"));
  for (const char* part : {"font-style:italic;\">b</span>", "font-weight:700;\">c</span>", "line-through;\">d</span>",
                           "background-color:#eee;\">e</span>", "href=\"https://g\">f</a>", "<br/>  h"}) {
    EXPECT_TRUE(row.html.contains(QLatin1String(part))) << part << "\n" << row.html.toStdString();
  }
}

TEST(MarkdownBlocks, ATableIsReadRowByRowUnderItsTitles) {
  const auto row = makeBlockRows("| A | B |\n|---|---|\n| 1 | 2 |\n| 3 | 4 | 5 |\n| 6 |", kLook).at(0);
  EXPECT_EQ(row.plain, QStringLiteral("A, B\nA: 1, B: 2\nA: 3, B: 4, 5\nA: 6"));
}

TEST(MarkdownBlocks, AMessageThatGrowsKeepsTheBlocksThatStay) {
  MarkdownBlocks blocks;
  const QAbstractItemModelTester tester(&blocks, QAbstractItemModelTester::FailureReportingMode::Fatal);
  blocks.setSource(QStringLiteral("a\n\nb"));
  EXPECT_EQ(blocks.rowCount(), 0) << "not before every property has its value";
  blocks.componentComplete();
  ASSERT_EQ(blocks.rowCount(), 2);
  const QSignalSpy changed(&blocks, &QAbstractItemModel::dataChanged);
  const QSignalSpy inserted(&blocks, &QAbstractItemModel::rowsInserted);
  const QSignalSpy removed(&blocks, &QAbstractItemModel::rowsRemoved);
  blocks.setSource(QStringLiteral("a\n\nbc\n\n# d"));
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(removed.count(), 0);
}

}  // namespace
}  // namespace varnel::screens
