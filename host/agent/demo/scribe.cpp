// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/scribe.h"

#include <algorithm>
#include <utility>

namespace varnel::agent::demo {

using json::JSONValue;
using Object = JSONValue::Object;
using wire::CodexTurnState;

namespace {

Object toolDetail(const wire::TranscriptItem& item, const ToolRun& run) {
  Object detail = run.before;
  detail["id"] = item.id;
  detail["type"] = run.type;
  detail["status"] = *item.status;
  return detail;
}

json::JSONValue contentOf(const TurnInput& input) {
  JSONValue::Array content{Object{{"type", "text"}, {"text", input.text}}};
  for (const TurnInput::Attachment& attachment : input.attachments) {
    content.emplace_back(Object{{"type", attachment.record.kind == "image" ? "localImage" : "mention"},
                                {"name", attachment.record.name},
                                {"path", attachment.path}});
  }
  return content;
}

}  // namespace

Scribe::Scribe(DemoConversation& conversation, std::function<double()> now, std::function<void(const Change&)> report)
    : m_conversation(conversation), m_now(std::move(now)), m_report(std::move(report)) {}

void Scribe::touch() {
  m_conversation.summary.updatedAt = m_now();
}

void Scribe::report(Change::Kind kind) {
  m_report({.kind = kind, .sessionId = m_conversation.summary.id, .turnId = m_conversation.summary.currentTurnId});
}

void Scribe::beginTurn() {
  ++m_conversation.turns;
  m_conversation.summary.currentTurnId = m_conversation.ids.uuid();
  setState(CodexTurnState::Working);
}

void Scribe::setState(CodexTurnState state) {
  auto& summary = m_conversation.summary;
  summary.state = state;
  summary.active = state == CodexTurnState::Working || state == CodexTurnState::NeedsInput;
  touch();
  report(Change::Kind::Turn);
}

void Scribe::endTurn(CodexTurnState state) {
  // What a process that died left behind stays as it was.
  if (state != CodexTurnState::Stale) endOpenTools();
  if (!m_conversation.requests.empty()) {
    for (const auto& request : std::exchange(m_conversation.requests, {})) {
      m_conversation.closedRequests.insert(request.id);
    }
    report(Change::Kind::Request);
  }
  auto& summary = m_conversation.summary;
  const std::optional<std::string> turn = std::exchange(summary.currentTurnId, std::nullopt);
  summary.state = state;
  summary.active = false;
  touch();
  m_report({.kind = Change::Kind::Turn, .sessionId = summary.id, .turnId = turn});
}

void Scribe::failTurn(const std::string& message) {
  m_conversation.summary.latestCommentary = plainLine(message);
  endTurn(CodexTurnState::Failed);
}

void Scribe::endOpenTools() {
  for (wire::TranscriptItem& item : m_conversation.items) {
    if (item.status != "inProgress") continue;
    item.status = "failed";
    JSONValue detail = item.detail ? item.detail->value() : JSONValue(Object{});
    (*detail.object())["status"] = *item.status;
    item.detail = detail;
    report(Change::Kind::Item);
  }
}

wire::TranscriptItem& Scribe::append(std::string_view idPrefix, std::string_view type) {
  touch();
  wire::TranscriptItem& item = m_conversation.items.emplace_back();
  item.id = m_conversation.ids.itemId(idPrefix);
  item.type = type;
  item.timestamp = m_conversation.summary.updatedAt;
  return item;
}

void Scribe::addUserMessage(const TurnInput& input) {
  wire::TranscriptItem& item = append("msg", "userMessage");
  item.role = "user";
  item.text = input.text;
  item.detail = JSONValue(Object{
      {"id", item.id},
      {"type", item.type},
      {"clientId", input.clientMessageId.empty() ? JSONValue() : JSONValue(input.clientMessageId)},
      {"content", contentOf(input)},
  });
  report(Change::Kind::Item);
}

void Scribe::beginMessage(bool final) {
  wire::TranscriptItem& item = append("msg", "agentMessage");
  item.role = "assistant";
  item.phase = final ? "final_answer" : "commentary";
  item.text.emplace();
  m_message = m_conversation.items.size() - 1;
}

void Scribe::growMessage(std::string_view more) {
  wire::TranscriptItem& item = m_conversation.items[m_message];
  item.text->append(more);
  m_conversation.summary.latestCommentary = plainLine(*item.text);
  touch();
  report(Change::Kind::Item);
}

void Scribe::think(const std::string& summary) {
  wire::TranscriptItem& item = append("rs", "reasoning");
  item.text = summary;
  item.detail = JSONValue(Object{
      {"id", item.id}, {"type", item.type}, {"summary", JSONValue::Array{summary}}, {"content", JSONValue::Array{}}});
  report(Change::Kind::Item);
}

void Scribe::movePlan(const MovePlan& plan) {
  touch();
  const auto& summary = m_conversation.summary;
  const bool completed = std::ranges::all_of(plan.steps, [](const auto& step) { return step.status == "completed"; });
  m_conversation.summary.plan = wire::ConversationPlan{.turnId = summary.currentTurnId,
                                                       .explanation = plan.explanation,
                                                       .steps = plan.steps,
                                                       .completed = completed,
                                                       .updatedAt = summary.updatedAt};
  report(Change::Kind::Plan);
}

void Scribe::beginTool(const ToolRun& run) {
  wire::TranscriptItem& item = append("call", run.type);
  item.title = run.title;
  item.status = "inProgress";
  item.detail = JSONValue(toolDetail(item, run));
  report(Change::Kind::Item);
}

void Scribe::endTool(const ToolRun& run, const std::string& status) {
  // Words said to the agent meanwhile may stand behind the tool.
  const auto tool = std::ranges::find_if(m_conversation.items.rbegin(), m_conversation.items.rend(),
                                         [&](const auto& item) { return item.status == "inProgress"; });
  if (tool == m_conversation.items.rend()) return;
  tool->status = status;
  Object detail = toolDetail(*tool, run);
  if (status == run.status) {
    for (const auto& [key, member] : run.after) detail[key] = member;
  } else if (run.type == "mcpToolCall") {
    detail["error"] = Object{{"message", "user rejected MCP tool call"}};
  }
  tool->detail = JSONValue(std::move(detail));
  touch();
  report(Change::Kind::Item);
}

std::string Scribe::ask(const Ask& question) {
  touch();
  auto& summary = m_conversation.summary;
  wire::PendingRequest request;
  request.id = m_conversation.ids.itemId("req");
  request.method = question.method;
  request.sessionId = summary.id;
  request.turnId = summary.currentTurnId;
  request.createdAt = summary.updatedAt;
  request.params = question.params;
  request.params["threadId"] = summary.id;
  request.params["turnId"] = summary.currentTurnId.value_or("");
  if (question.subject) {
    request.params["itemId"] = m_conversation.items.back().id;
    request.params["startedAtMs"] = static_cast<std::int64_t>(summary.updatedAt * 1000);
  } else {
    request.params["itemId"] = m_conversation.ids.itemId("call");
  }
  request.availableDecisions = question.decisions;
  m_conversation.requests.push_back(request);
  setState(CodexTurnState::NeedsInput);
  report(Change::Kind::Request);
  return request.id;
}

void Scribe::closeRequest(const std::string& requestId) {
  const auto erased =
      std::erase_if(m_conversation.requests, [&](const auto& request) { return request.id == requestId; });
  if (erased == 0) return;
  m_conversation.closedRequests.insert(requestId);
  report(Change::Kind::Request);
}

void Scribe::countTokens(std::int64_t input, std::int64_t output, std::int64_t reasoning) {
  auto& usage = m_conversation.summary.tokenUsage;
  if (!usage) {
    usage.emplace();
    usage->contextWindow = kContextWindow;
  }
  usage->contextTokens = std::min(usage->contextTokens + input / 3 + output, kContextWindow * 9 / 10);
  usage->inputTokens = usage->inputTokens.value_or(0) + input;
  usage->outputTokens = usage->outputTokens.value_or(0) + output;
  usage->reasoningTokens = usage->reasoningTokens.value_or(0) + reasoning;
  report(Change::Kind::Settings);
}

}  // namespace varnel::agent::demo
