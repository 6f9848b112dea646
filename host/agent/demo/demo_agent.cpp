// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/demo_agent.h"

#include "host/agent/demo/catalogue.h"
#include "host/agent/demo/world.h"

namespace varnel::agent::demo {

DemoAgent::DemoAgent(boost::asio::any_io_executor executor, DemoOptions options)
    : m_world(std::make_unique<World>(std::move(executor), std::move(options))) {}

DemoAgent::~DemoAgent() = default;

Task<void> DemoAgent::start(std::function<void(const Change&)> onChange) {
  m_world->start(std::move(onChange));
  co_return Result<void>();
}

void DemoAgent::stop() {
  m_world->stop();
}

Task<std::vector<wire::SessionSummary>> DemoAgent::sessions() {
  co_return m_world->sessions();
}

Task<Conversation> DemoAgent::conversation(std::string sessionId) {
  co_return m_world->conversation(sessionId);
}

Task<std::vector<wire::ArchivedSession>> DemoAgent::archived() {
  co_return m_world->archived();
}

Task<std::vector<wire::ProjectRecord>> DemoAgent::projects() {
  co_return projectList();
}

Task<json::JSONValue> DemoAgent::models() {
  co_return modelCatalogue();
}

Task<wire::RateLimitEnvelope> DemoAgent::rateLimit() {
  co_return m_world->usage().rateLimit();
}

Task<wire::UsageEnvelope> DemoAgent::usage(std::optional<std::string> sessionId) {
  co_return m_world->usage().usage(sessionId ? m_world->find(*sessionId) : nullptr);
}

Task<std::string> DemoAgent::createSession(NewSession session) {
  co_return m_world->createSession(std::move(session));
}

Task<void> DemoAgent::sendMessage(std::string sessionId, TurnInput input) {
  co_return m_world->sendMessage(sessionId, std::move(input));
}

Task<void> DemoAgent::startGoal(std::string sessionId, TurnInput input) {
  co_return m_world->startGoal(sessionId, std::move(input));
}

Task<void> DemoAgent::updateSettings(std::string sessionId, wire::ConversationPreferences preferences) {
  co_return m_world->updateSettings(sessionId, std::move(preferences));
}

Task<void> DemoAgent::interrupt(std::string sessionId) {
  co_return m_world->interrupt(sessionId);
}

Task<void> DemoAgent::rename(std::string sessionId, std::string name) {
  co_return m_world->rename(sessionId, name);
}

Task<void> DemoAgent::archive(std::string sessionId) {
  co_return m_world->archive(sessionId);
}

Task<void> DemoAgent::unarchive(std::string sessionId) {
  co_return m_world->unarchive(sessionId);
}

Task<void> DemoAgent::resolve(std::string requestId, json::JSONValue result) {
  co_return m_world->resolve(requestId, result);
}

}  // namespace varnel::agent::demo
