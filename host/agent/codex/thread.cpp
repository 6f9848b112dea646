// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/thread.h"

#include <algorithm>

#include "core/json/enum_names.h"
#include "core/json/text.h"
#include "host/agent/codex/json_access.h"
#include "host/agent/codex/projects.h"
#include "host/agent/plain_line.h"

namespace varnel::agent::codex {

namespace {

/// Failed turns may hold the provider's own JSON.
std::string readableError(const std::string& message) {
  const auto parsed = json::parse(message);
  if (!parsed) return message;
  const auto inner = textOf(memberOf(*parsed, "error"), "message");
  return inner.empty() ? message : inner;
}

/// The sandbox's word in requests, from the name that the agent's answers give it.
std::optional<std::string> sandboxWord(const JSONValue& policy) {
  const auto type = textOf(policy, "type");
  if (type == "readOnly") return "read-only";
  if (type == "workspaceWrite") return "workspace-write";
  if (type == "dangerFullAccess") return "danger-full-access";
  return std::nullopt;
}

void takePreferences(Thread& thread, const JSONValue& from, const char* effort) {
  const auto model = optionalTextOf(from, "model");
  if (!model) return;
  auto& preferences = thread.memory.preferences;
  if (!preferences) preferences.emplace();
  // An effort that is not said is the model's own; what was known of another model does not hold.
  const auto word = optionalTextOf(from, effort);
  if (word || preferences->model != *model) preferences->reasoningEffort = word.value_or("");
  preferences->model = *model;
  preferences->serviceTier = optionalTextOf(from, "serviceTier");
  if (preferences->serviceTier == "default") preferences->serviceTier.reset();
}

void takePolicies(Thread& thread, const JSONValue& from, const char* sandbox) {
  if (auto word = sandboxWord(memberOf(from, sandbox))) thread.memory.sandbox = std::move(word);
  if (auto word = optionalTextOf(from, "approvalPolicy")) thread.memory.approvalPolicy = std::move(word);
}

}  // namespace

void takeRecord(Thread& thread, const JSONValue& record) {
  thread.id = textOf(record, "id");
  thread.name = optionalTextOf(record, "name");
  if (thread.name && thread.name->empty()) thread.name.reset();
  thread.cwd = optionalTextOf(record, "cwd");
  thread.updatedAt = std::max(thread.updatedAt, numberOf(record, "updatedAt").value_or(0));
  thread.hasStableIds = textOf(record, "historyMode") != "legacy";
  if (!textOf(record, "preview").empty() || thread.name) thread.begun = true;
  if (record.member("status") != nullptr) takeStatus(thread, memberOf(record, "status"));
}

void takeStatus(Thread& thread, const JSONValue& status) {
  const auto type = textOf(status, "type");
  thread.loaded = type != "notLoaded" && !type.empty();
  thread.active = type == "active";
  thread.broken = type == "systemError";
  thread.waiting = thread.active && !listOf(status, "activeFlags").empty();
  if (thread.active) thread.begun = true;
  if (!thread.active) thread.turn.reset();
  if (!thread.loaded) thread.followed = false;
}

void takeLastTurn(Thread& thread, const JSONValue& turn) {
  auto& last = thread.memory.last;
  last.id = textOf(turn, "id");
  last.status = textOf(turn, "status");
  last.hasEnded = numberOf(turn, "completedAt").has_value();
  last.error = readableError(textOf(memberOf(turn, "error"), "message"));
  thread.begun = true;
  for (const auto& item : listOf(turn, "items")) {
    if (textOf(item, "type") == "agentMessage") thread.memory.commentary = plainLine(textOf(item, "text"));
  }
}

void takeSettings(Thread& thread, const JSONValue& settings) {
  takePreferences(thread, settings, "effort");
  takePolicies(thread, settings, "sandboxPolicy");
  const auto mode =
      json::fromName<wire::CodexCollaborationMode>(textOf(memberOf(settings, "collaborationMode"), "mode"));
  if (mode && thread.memory.preferences) thread.memory.preferences->mode = *mode;
}

void takeStartSettings(Thread& thread, const JSONValue& answer) {
  const auto tier = thread.memory.preferences ? thread.memory.preferences->serviceTier : std::nullopt;
  takePreferences(thread, answer, "reasoningEffort");
  takePolicies(thread, answer, "sandbox");
  // The tier is not restored by the agent; what was chosen goes out with the next turn.
  if (thread.memory.preferences && !thread.memory.preferences->serviceTier)
    thread.memory.preferences->serviceTier = tier;
}

void takeTokenUsage(Thread& thread, const JSONValue& usage) {
  const auto window = wholeOf(usage, "modelContextWindow");
  const auto context = wholeOf(memberOf(usage, "last"), "totalTokens");
  if (!window || !context) {
    thread.memory.tokenUsage.reset();
    return;
  }
  const auto& total = memberOf(usage, "total");
  thread.memory.tokenUsage = wire::ConversationTokenUsage{.contextTokens = *context,
                                                          .contextWindow = *window,
                                                          .inputTokens = wholeOf(total, "inputTokens"),
                                                          .outputTokens = wholeOf(total, "outputTokens"),
                                                          .reasoningTokens = wholeOf(total, "reasoningOutputTokens")};
}

void takePlan(Thread& thread, const JSONValue& params, double now) {
  wire::ConversationPlan plan{.turnId = optionalTextOf(params, "turnId"),
                              .explanation = optionalTextOf(params, "explanation"),
                              .steps = {},
                              .completed = false,
                              .updatedAt = now};
  for (const auto& step : listOf(params, "plan")) {
    plan.steps.push_back({.step = textOf(step, "step"), .status = textOf(step, "status")});
  }
  plan.completed = !plan.steps.empty() &&
                   std::ranges::all_of(plan.steps, [](const auto& step) { return step.status == "completed"; });
  thread.memory.plan = std::move(plan);
}

wire::CodexTurnState stateOf(const Thread& thread, bool hasRequests) {
  using State = wire::CodexTurnState;
  const auto& last = thread.memory.last;
  if (thread.active) return hasRequests || thread.waiting ? State::NeedsInput : State::Working;
  if (thread.broken || last.status == "failed") return State::Failed;
  if (last.status == "interrupted") return last.hasEnded ? State::Interrupted : State::Stale;
  return last.status == "inProgress" ? State::Stale : State::Done;
}

wire::SessionSummary summaryOf(const Thread& thread, bool hasRequests) {
  wire::SessionSummary summary;
  summary.id = thread.id;
  summary.name = thread.name;
  summary.cwd = thread.cwd;
  summary.project = thread.name.value_or(worktreeName(thread.cwd.value_or("")));
  summary.active = thread.active;
  summary.state = stateOf(thread, hasRequests);
  if (thread.active) summary.currentTurnId = thread.turn;
  const auto& memory = thread.memory;
  const bool hasFailed = summary.state == wire::CodexTurnState::Failed && !memory.last.error.empty();
  summary.latestCommentary = hasFailed ? plainLine(memory.last.error) : memory.commentary;
  summary.updatedAt = thread.updatedAt;
  summary.tokenUsage = memory.tokenUsage;
  summary.turnPreferences = memory.preferences;
  summary.plan = memory.plan;
  return summary;
}

}  // namespace varnel::agent::codex
