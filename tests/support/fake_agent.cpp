// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/support/fake_agent.h"

#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>

#include "core/json/text.h"

namespace varnel::support {

namespace asio = boost::asio;
using agent::Task;

namespace {

constexpr const char* kCatalogue = R"({"data": [
  {"id": "deep", "displayName": "Deep", "isDefault": true, "defaultReasoningEffort": "medium",
   "supportedReasoningEfforts": [{"reasoningEffort": "low"}, {"reasoningEffort": "medium"}],
   "serviceTiers": [{"id": "priority", "name": "Fast"}]},
  {"id": "quick", "displayName": "Quick", "supportedReasoningEfforts": ["low"]}]})";

}  // namespace

wire::TranscriptItem item(std::string id, std::string type, std::string text) {
  wire::TranscriptItem made;
  made.id = std::move(id);
  made.type = std::move(type);
  made.timestamp = 1;
  made.text = std::move(text);
  return made;
}

FakeAgent::FakeAgent(asio::any_io_executor executor)
    : catalogue(json::parse(kCatalogue).value()), m_gate(executor, asio::steady_timer::time_point::max()) {
  usageEnvelope.fetchedAt = 5;
  projectRecords = {{.path = "/srv/safe", .name = "safe", .highRisk = false},
                    {.path = "/", .name = "root", .highRisk = true}};
}

wire::SessionSummary& FakeAgent::addSession(const std::string& id, double updatedAt) {
  wire::SessionSummary summary;
  summary.id = id;
  summary.name = "Name of " + id;
  summary.cwd = "/srv/safe";
  summary.project = *summary.name;
  summary.latestCommentary = "Done.";
  summary.updatedAt = updatedAt;
  items[id] = {item(id + "-1", "userMessage", "Question of " + id), item(id + "-2", "agentMessage", "Answer")};
  return summaries.emplace_back(std::move(summary));
}

void FakeAgent::change(agent::Change::Kind kind, std::optional<std::string> sessionId) {
  m_onChange({.kind = kind, .sessionId = std::move(sessionId)});
}

void FakeAgent::release() {
  m_held = false;
  m_listHeld = false;
  m_gate.cancel();
}

Task<void> FakeAgent::start(std::function<void(const agent::Change&)> onChange) {
  m_onChange = std::move(onChange);
  co_return agent::Result<void>();
}

Task<std::vector<wire::SessionSummary>> FakeAgent::sessions() {
  ++m_listsWaiting;
  while (m_listHeld) co_await m_gate.async_wait(asio::as_tuple(asio::use_awaitable));
  --m_listsWaiting;
  if (readFailure) co_return std::unexpected(*readFailure);
  co_return summaries;
}

Task<agent::Conversation> FakeAgent::conversation(std::string sessionId) {
  if (readFailure) co_return std::unexpected(*readFailure);
  const auto found = std::ranges::find(summaries, sessionId, &wire::SessionSummary::id);
  agent::Conversation conversation;
  if (found != summaries.end()) {
    conversation.summary = *found;
  } else if (std::ranges::find(archivedSessions, sessionId, &wire::ArchivedSession::id) != archivedSessions.end()) {
    conversation.summary.id = sessionId;
  } else {
    co_return std::unexpected(agent::AgentError{.kind = agent::AgentError::Kind::NotFound, .text = "No conversation."});
  }
  conversation.items = items[sessionId];
  conversation.pendingRequests = requests[sessionId];
  co_return conversation;
}

Task<std::vector<wire::ArchivedSession>> FakeAgent::archived() {
  if (readFailure) co_return std::unexpected(*readFailure);
  co_return archivedSessions;
}
Task<std::vector<wire::ProjectRecord>> FakeAgent::projects() {
  co_return projectRecords;
}
Task<json::JSONValue> FakeAgent::models() {
  co_return catalogue;
}

Task<wire::RateLimitEnvelope> FakeAgent::rateLimit() {
  co_return wire::RateLimitEnvelope{.rateLimit = usageEnvelope.rateLimit};
}

Task<wire::UsageEnvelope> FakeAgent::usage(std::optional<std::string> sessionId) {
  calls.push_back("usage " + sessionId.value_or("-"));
  co_return usageEnvelope;
}

Task<std::string> FakeAgent::createSession(agent::NewSession session) {
  inputs.push_back(session.firstTurn);
  const auto done = co_await perform("create " + session.cwd + " " + session.sandbox + " " + session.approvalPolicy);
  if (!done) co_return std::unexpected(done.error());
  addSession("new", 99);
  co_return "new";
}

Task<void> FakeAgent::sendMessage(std::string sessionId, agent::TurnInput input) {
  inputs.push_back(input);
  return perform("message " + sessionId + " " + input.text);
}

Task<void> FakeAgent::startGoal(std::string sessionId, agent::TurnInput input) {
  inputs.push_back(input);
  return perform("goal " + sessionId + " " + input.text);
}

Task<void> FakeAgent::updateSettings(std::string sessionId, wire::ConversationPreferences preferences) {
  return perform("settings " + sessionId + " " + preferences.model + " " + preferences.reasoningEffort + " " +
                 preferences.serviceTier.value_or("-"));
}

Task<void> FakeAgent::interrupt(std::string sessionId) {
  return perform("interrupt " + sessionId);
}
Task<void> FakeAgent::rename(std::string sessionId, std::string name) {
  return perform("rename " + sessionId + " " + name);
}
Task<void> FakeAgent::archive(std::string sessionId) {
  return perform("archive " + sessionId);
}
Task<void> FakeAgent::unarchive(std::string sessionId) {
  return perform("unarchive " + sessionId);
}
Task<void> FakeAgent::resolve(std::string requestId, json::JSONValue result) {
  return perform("resolve " + requestId + " " + json::write(result).value_or("?"));
}

Task<void> FakeAgent::perform(std::string call) {
  calls.push_back(std::move(call));
  while (m_held) co_await m_gate.async_wait(asio::as_tuple(asio::use_awaitable));
  if (failure) co_return std::unexpected(*failure);
  co_return agent::Result<void>();
}

}  // namespace varnel::support
