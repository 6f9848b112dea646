// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/transcript_row.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "core/json/raw_value.h"

namespace varnel::screens {
namespace {

using testing::ElementsAre;

wire::TranscriptItem item(const std::string& id, const std::string& type) {
  return {.id = id, .type = type};
}

TEST(TranscriptRow, AGroupIsNamedAfterItsOnlyItemElseAfterTheirNumber) {
  const auto label = [](std::vector<wire::TranscriptItem> items) { return makeTranscriptRows(items, {}).at(0).text; };
  auto titled = item("1", "fileChange");
  titled.title = "Read file";
  EXPECT_EQ(label({titled}), "Read file");
  EXPECT_EQ(label({item("1", "commandExecution")}), "Command Execution");
  EXPECT_EQ(label({item("1", "fileChange")}), "File Change");
  EXPECT_EQ(label({item("1", "webSearch")}), "Websearch");
  EXPECT_EQ(label({titled, item("2", "x"), item("3", "y")}), "3 tool activities");
}

TEST(TranscriptRow, AnUnfoldedGroupTellsWhatWasDoneAndShowsChangesSafely) {
  auto edit = item("1", "fileChange");
  edit.status = "in_progress";
  edit.detail =
      json::RawValue::parse(
          R"({"changes":[{"path":"a<b>.c","kind":{"type":"update"},"diff":"@@ -1 +1 @@\n-<img src=x>\n+y\u202e"}]})")
          .value();
  const auto folded = makeTranscriptRows({edit, item("2", "webSearch")}, {}).at(0);
  EXPECT_TRUE(folded.entries.empty());
  const auto row = makeTranscriptRows({edit, item("2", "webSearch")}, {"tools-1"}).at(0);
  ASSERT_EQ(row.entries.size(), 2U);
  EXPECT_EQ(row.entries[0].title, QStringLiteral("File Change"));
  EXPECT_EQ(row.entries[0].status, QStringLiteral("In Progress"));
  EXPECT_TRUE(row.entries[0].diff.contains(QStringLiteral("a&lt;b&gt;.c")));
  EXPECT_TRUE(row.entries[0].diff.contains(QStringLiteral("<p class=\"removed\">-&lt;img src=x&gt;</p>")));
  EXPECT_TRUE(row.entries[0].diff.contains(QStringLiteral("<p class=\"added\">+y\\u{202E}</p>")));
  EXPECT_TRUE(row.entries[0].detail.startsWith(QStringLiteral("{\n  \"changes\"")));
  EXPECT_EQ(row.entries[1].detail, QString());
}

}  // namespace
}  // namespace varnel::screens
