// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/transcript_row.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace varnel::screens {
namespace {

using testing::ElementsAre;

struct Item {
  std::string type;
  std::optional<std::string> role;
  std::optional<std::string> title;
  std::optional<std::string> text;
  std::optional<std::string> status;
};

std::vector<std::string> spoken(const std::vector<Item>& items) {
  std::vector<wire::TranscriptItem> transcript;
  for (const Item& each : items) {
    transcript.push_back({.id = std::to_string(transcript.size()),
                          .type = each.type,
                          .timestamp = 0,
                          .role = each.role,
                          .phase = {},
                          .title = each.title,
                          .text = each.text,
                          .detail = {},
                          .status = each.status});
  }
  std::vector<std::string> result;
  for (const TranscriptRow& row : makeTranscriptRows(transcript)) result.push_back(row.spoken.toStdString());
  return result;
}

TEST(TranscriptRow, RolesDecideWhatIsAMessage) {
  EXPECT_THAT(spoken({{.type = "userMessage", .role = "user", .title = {}, .text = "hello", .status = {}},
                      {.type = "reasoning", .role = "assistant", .title = {}, .text = "hm", .status = {}},
                      {.type = "plan", .role = {}, .title = "Plan", .text = {}, .status = {}},
                      {.type = "x", .role = "assistant", .title = {}, .text = "<b>hi</b>", .status = {}},
                      {.type = "agentMessage", .role = "assistant", .title = {}, .text = {}, .status = {}},
                      {.type = "agentMessage", .role = "system", .title = "Notice", .text = "t", .status = {}}}),
              ElementsAre("You: hello", "Codex: <b>hi</b>", "Codex", "Notice"));
}

TEST(TranscriptRow, ToolsHaveATitleAndAReadableStatus) {
  EXPECT_THAT(spoken({{.type = "commandExecution", .role = {}, .title = {}, .text = {}, .status = "in_progress"},
                      {.type = "fileChange", .role = {}, .title = {}, .text = {}, .status = {}},
                      {.type = "webSearch", .role = {}, .title = {}, .text = {}, .status = "completed"},
                      {.type = "commandExecution", .role = {}, .title = "git\nlog", .text = {}, .status = "FAILED"}}),
              ElementsAre("Command Execution, In Progress", "File Change", "Websearch, Completed", "git log, Failed"));
}

TEST(RequestNotice, NamesWhatIsAskedAndLeavesOutWhatIsResolved) {
  const auto request = [](const char* id, const char* method, bool resolved) {
    return wire::PendingRequest{.id = id,
                                .method = method,
                                .sessionId = "s",
                                .turnId = {},
                                .createdAt = 0,
                                .params = {},
                                .availableDecisions = {},
                                .resolved = resolved};
  };
  const auto notices = makeRequestNotices({request("1", "item/fileChange/requestApproval", false),
                                           request("2", "item/x", true), request("3", "unheard/of", false)});
  ASSERT_EQ(notices.size(), 2U);
  EXPECT_EQ(notices[0].method, QStringLiteral("fileChange/requestApproval"));
  EXPECT_EQ(notices[1].method, QStringLiteral("unheard/of"));
}

}  // namespace
}  // namespace varnel::screens
