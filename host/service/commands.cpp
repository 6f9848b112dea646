// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/commands.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/live/catalogue.h"
#include "host/service/log.h"
#include "host/service/preferences.h"

namespace varnel::service {

using Kind = Failure::Kind;

namespace {

constexpr std::array<std::string_view, 3> kSandboxes{"read-only", "workspace-write", "danger-full-access"};
constexpr std::array<std::string_view, 4> kPolicies{"untrusted", "on-request", "on-failure", "never"};
constexpr std::size_t kNameBytes = 1000;

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

Outcome<void> answer(const agent::Result<void>& result) {
  if (!result) return refusedBy(result.error());
  return {};
}

}  // namespace

Task<wire::ConversationPreferences> Commands::checkedPreferences(wire::SettingsBody body) {
  const auto models = co_await m_agent.models();
  if (!models) co_return refusedBy(models.error());
  co_return readPreferences(body, live::parseModels(*models));
}

Task<agent::TurnInput> Commands::turnInput(std::string sessionId, wire::MessageBody body, std::string messageId) {
  if (isBlank(body.text) && body.attachments.empty()) co_return refuse(Kind::Invalid, "There is nothing to send.");
  auto preferences = co_await checkedPreferences({.mode = body.mode,
                                                  .model = body.model,
                                                  .reasoningEffort = body.reasoningEffort,
                                                  .serviceTier = body.serviceTier});
  if (!preferences) co_return std::unexpected(preferences.error());
  auto attachments = m_attachments.find(sessionId, body.attachments);
  if (!attachments) co_return std::unexpected(attachments.error());
  co_return agent::TurnInput{.text = std::move(body.text),
                             .preferences = std::move(*preferences),
                             .attachments = std::move(*attachments),
                             .clientMessageId = std::move(messageId)};
}

Task<void> Commands::checkMessage(std::string sessionId, wire::MessageBody body) {
  const auto sessions = co_await m_agent.sessions();
  if (!sessions) co_return refusedBy(sessions.error());
  if (std::ranges::find(*sessions, sessionId, &wire::SessionSummary::id) == sessions->end()) {
    const auto exists = co_await checkExists(sessionId);
    if (!exists) co_return std::unexpected(exists.error());
    co_return refuse(Kind::Conflict, "This conversation is archived.");
  }
  const auto input = co_await turnInput(std::move(sessionId), std::move(body), "");
  if (!input) co_return std::unexpected(input.error());
  co_return Outcome<void>();
}

/// A conversation that the user acts on from the phone is the one the lock screen follows. The agent has taken the
/// message by now: what goes wrong here must not make the phone send it once more.
void Commands::begun(const std::string& sessionId) {
  try {
    if (m_tracking.of(sessionId).tracked) return;
    m_tracking.track(sessionId);
    m_events.note({.kind = agent::Change::Kind::Settings, .sessionId = sessionId});
  } catch (const std::exception& error) {
    log(std::string("a conversation is not tracked: ") + error.what());
  }
}

Task<void> Commands::sendMessage(std::string sessionId, wire::MessageBody body, std::string messageId) {
  const auto input = co_await turnInput(sessionId, std::move(body), std::move(messageId));
  if (!input) co_return std::unexpected(input.error());
  m_attachments.markSent(input->attachments);
  const auto sent = co_await m_agent.sendMessage(sessionId, *input);
  if (sent) begun(sessionId);
  co_return answer(sent);
}

Task<void> Commands::startGoal(std::string sessionId, wire::GoalBody body, std::string messageId) {
  wire::MessageBody message{.text = std::move(body.objective),
                            .mode = std::move(body.mode),
                            .model = std::move(body.model),
                            .reasoningEffort = std::move(body.reasoningEffort),
                            .serviceTier = std::move(body.serviceTier),
                            .attachments = std::move(body.attachments)};
  const auto input = co_await turnInput(sessionId, std::move(message), std::move(messageId));
  if (!input) co_return std::unexpected(input.error());
  m_attachments.markSent(input->attachments);
  const auto sent = co_await m_agent.startGoal(sessionId, *input);
  if (sent) begun(sessionId);
  co_return answer(sent);
}

Task<void> Commands::updateSettings(std::string sessionId, wire::SettingsBody body) {
  const auto preferences = co_await checkedPreferences(std::move(body));
  if (!preferences) co_return std::unexpected(preferences.error());
  co_return answer(co_await m_agent.updateSettings(std::move(sessionId), *preferences));
}

Task<void> Commands::checkProject(std::string cwd, bool acknowledged) {
  if (!cwd.starts_with('/')) co_return refuse(Kind::Invalid, "The project is not an absolute path.");
  const auto projects = co_await m_agent.projects();
  if (!projects) co_return refusedBy(projects.error());
  const auto project = std::ranges::find(*projects, cwd, &wire::ProjectRecord::path);
  if (project == projects->end()) co_return refuse(Kind::Invalid, "The host has no such project.");
  if (project->highRisk && !acknowledged) {
    co_return refuse(Kind::Invalid, "Starting here is risky and needs to be acknowledged.");
  }
  co_return Outcome<void>();
}

Task<wire::NewSessionResult> Commands::createSession(wire::NewSessionBody body, std::string messageId) {
  if (std::ranges::find(kSandboxes, body.sandbox) == kSandboxes.end()) {
    co_return refuse(Kind::Invalid, "The agent knows no sandbox \"" + body.sandbox + "\".");
  }
  if (std::ranges::find(kPolicies, body.approvalPolicy) == kPolicies.end()) {
    co_return refuse(Kind::Invalid, "The agent knows no approval policy \"" + body.approvalPolicy + "\".");
  }
  for (const auto& choice : {body.sandbox, body.approvalPolicy}) {
    if (m_policy.forbidden.contains(choice)) {
      co_return refuse(Kind::Forbidden, "This host does not allow \"" + choice + "\".");
    }
  }
  const auto project = co_await checkProject(body.cwd, body.acknowledgeHighRisk);
  if (!project) co_return std::unexpected(project.error());
  const auto models = co_await m_agent.models();
  if (!models) co_return refusedBy(models.error());
  auto settings = completed(body, live::parseModels(*models));
  wire::MessageBody message{.text = std::move(body.prompt),
                            .mode = std::move(settings.mode),
                            .model = std::move(settings.model),
                            .reasoningEffort = std::move(settings.reasoningEffort),
                            .serviceTier = std::move(settings.serviceTier),
                            .attachments = {}};
  auto input = co_await turnInput("", std::move(message), std::move(messageId));
  if (!input) co_return std::unexpected(input.error());
  agent::NewSession session{.cwd = std::move(body.cwd),
                            .sandbox = std::move(body.sandbox),
                            .approvalPolicy = std::move(body.approvalPolicy),
                            .firstTurn = std::move(*input)};
  const auto created = co_await m_agent.createSession(std::move(session));
  if (!created) co_return refusedBy(created.error());
  begun(*created);
  co_return wire::NewSessionResult{.threadId = *created};
}

Task<void> Commands::interrupt(std::string sessionId) {
  co_return answer(co_await m_agent.interrupt(std::move(sessionId)));
}

Task<void> Commands::rename(std::string sessionId, wire::RenameBody body) {
  if (isBlank(body.name)) co_return refuse(Kind::Invalid, "A conversation's name cannot be empty.");
  if (body.name.size() > kNameBytes) co_return refuse(Kind::Invalid, "This name is too long.");
  co_return answer(co_await m_agent.rename(std::move(sessionId), std::move(body.name)));
}

Task<void> Commands::archive(std::string sessionId) {
  co_return answer(co_await m_agent.archive(std::move(sessionId)));
}

Task<void> Commands::unarchive(std::string sessionId) {
  co_return answer(co_await m_agent.unarchive(std::move(sessionId)));
}

Task<void> Commands::resolve(std::string requestId, wire::ResolveBody body) {
  co_return answer(co_await m_agent.resolve(std::move(requestId), std::move(body.result)));
}

Task<void> Commands::checkExists(std::string sessionId) {
  const auto sessions = co_await m_agent.sessions();
  if (!sessions) co_return refusedBy(sessions.error());
  if (std::ranges::find(*sessions, sessionId, &wire::SessionSummary::id) != sessions->end()) co_return Outcome<void>();
  const auto archived = co_await m_agent.archived();
  if (!archived) co_return refusedBy(archived.error());
  if (std::ranges::find(*archived, sessionId, &wire::ArchivedSession::id) != archived->end()) {
    co_return Outcome<void>();
  }
  co_return refuse(Kind::NotFound, "There is no such conversation.");
}

Task<void> Commands::track(wire::TrackingBody body) {
  const std::string action = body.action.value_or("");
  if (!body.sessionId) {
    if (action != "clear") co_return refuse(Kind::Invalid, "Tracking needs a conversation or the action \"clear\".");
    for (const auto& [id, marks] : m_tracking.all()) {
      if (marks.tracked) m_events.note({.kind = agent::Change::Kind::List, .sessionId = id});
    }
    m_tracking.untrackAll();
    co_return Outcome<void>();
  }
  if (const auto exists = co_await checkExists(*body.sessionId); !exists) co_return std::unexpected(exists.error());
  if (action.empty()) {
    m_tracking.setPinned(*body.sessionId, body.pin);
  } else if (action == "track") {
    m_tracking.track(*body.sessionId);
  } else if (action == "untrack" || action == "clear") {
    m_tracking.untrack(*body.sessionId);
  } else {
    co_return refuse(Kind::Invalid, "Tracking knows no action \"" + action + "\".");
  }
  m_events.note({.kind = agent::Change::Kind::List, .sessionId = body.sessionId});
  co_return Outcome<void>();
}

}  // namespace varnel::service
