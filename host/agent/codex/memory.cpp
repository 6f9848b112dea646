// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/text.h"
#include "core/wire/codec.h"
#include "host/agent/codex/json_access.h"
#include "host/agent/codex/thread.h"

namespace varnel::agent::codex {

std::string encodeMemory(const Remembered& memory) {
  wire::SessionSummary summary;
  summary.latestCommentary = memory.commentary;
  summary.tokenUsage = memory.tokenUsage;
  summary.turnPreferences = memory.preferences;
  summary.plan = memory.plan;
  const auto session = json::parse(wire::encode(summary).value_or("null"));
  const JSONValue::Object last{{"id", memory.last.id},
                               {"status", memory.last.status},
                               {"hasEnded", memory.last.hasEnded},
                               {"error", memory.last.error}};
  const JSONValue::Object whole{{"sandbox", nullable(memory.sandbox)},
                                {"approvalPolicy", nullable(memory.approvalPolicy)},
                                {"session", session.value_or(JSONValue())},
                                {"last", last},
                                {"readAt", memory.readAt}};
  return json::write(whole).value_or("{}");
}

Remembered decodeMemory(const std::string& text) {
  const auto whole = json::parse(text).value_or(JSONValue());
  Remembered memory;
  memory.sandbox = optionalTextOf(whole, "sandbox");
  memory.approvalPolicy = optionalTextOf(whole, "approvalPolicy");
  const auto& last = memberOf(whole, "last");
  memory.last = {.id = textOf(last, "id"),
                 .status = textOf(last, "status"),
                 .hasEnded = flagOf(last, "hasEnded"),
                 .error = textOf(last, "error")};
  const auto session = json::write(memberOf(whole, "session"));
  if (auto summary = wire::decode<wire::SessionSummary>(session.value_or(""))) {
    memory.commentary = std::move(summary->latestCommentary);
    memory.tokenUsage = summary->tokenUsage;
    memory.preferences = std::move(summary->turnPreferences);
    memory.plan = std::move(summary->plan);
    memory.readAt = numberOf(whole, "readAt").value_or(-1);
  }
  return memory;
}

}  // namespace varnel::agent::codex
