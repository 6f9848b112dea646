// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/conversations.h"

#include <algorithm>
#include <tuple>

#include "core/json/text.h"
#include "core/wire/session_detail.h"
#include "host/service/checked.h"
#include "host/service/cursor.h"

namespace varnel::service {

namespace {

void mark(wire::SessionSummary& session, const store::Marks& marks) {
  session.pinned = marks.pinned;
  session.tracked = marks.tracked;
}

int urgency(const wire::SessionSummary& session) {
  if (session.state == wire::CodexTurnState::NeedsInput) return 0;
  return session.active || session.state == wire::CodexTurnState::Working ? 1 : 2;
}

/// What one member of the detail says; a failure when the phone could not read it.
template <class T>
Outcome<void> checkMember(std::string_view name, const wire::SessionDetail::Member<T>& member) {
  if (!member || !*member) return unsendable(name, member->error());
  return {};
}

Outcome<std::string> detailText(const agent::Conversation& conversation,
                                const std::vector<wire::QueuedMessage>& waiting) {
  const auto items = wire::encode(conversation.items);
  const auto requests = wire::encode(conversation.pendingRequests);
  const auto session = wire::encode(conversation.summary);
  const auto queued = wire::encode(waiting);
  if (!items) return unsendable("items", items.error());
  if (!requests) return unsendable("pendingRequests", requests.error());
  if (!session) return unsendable("session", session.error());
  if (!queued) return unsendable("queued", queued.error());
  std::string text = R"({"items":)" + *items + R"(,"pendingRequests":)" + *requests + R"(,"session":)" + *session +
                     R"(,"queued":)" + *queued + "}";
  const auto read = wire::decodeSessionDetail(text);
  if (!read) return unsendable("detail", read.error());
  for (const auto& checked : {checkMember("items", read->items), checkMember("pendingRequests", read->pendingRequests),
                              checkMember("session", read->session), checkMember("queued", read->queued)}) {
    if (!checked) return std::unexpected(checked.error());
  }
  return text;
}

bool isAfter(const wire::ArchivedSession& session, const Cursor& cursor) {
  const double at = session.updatedAt.value_or(0);
  return at < cursor.updatedAt || (at == cursor.updatedAt && session.id > cursor.id);
}

/// Turns one page of a sorted list into its envelope.
wire::ArchivedSessionsEnvelope pageOf(const std::vector<wire::ArchivedSession>& all,
                                      const std::optional<Cursor>& after) {
  wire::ArchivedSessionsEnvelope page;
  for (const auto& session : all) {
    if (after && !isAfter(session, *after)) continue;
    if (page.data.size() == Conversations::kArchivePage) {
      const auto& last = page.data.back();
      page.nextCursor = writeCursor("archived", {.updatedAt = last.updatedAt.value_or(0), .id = last.id});
      break;
    }
    page.data.push_back(session);
  }
  return page;
}

}  // namespace

void sortForTriage(std::vector<wire::SessionSummary>& sessions) {
  const auto key = [](const wire::SessionSummary& session) {
    return std::tuple(!session.pinned, urgency(session), -session.updatedAt, std::string_view(session.id));
  };
  std::ranges::sort(sessions, {}, key);
}

Task<std::string> Conversations::list() {
  auto sessions = co_await m_agent.sessions();
  if (!sessions) co_return refusedBy(sessions.error());
  const auto marks = m_tracking.all();
  for (auto& session : *sessions) {
    const auto found = marks.find(session.id);
    mark(session, found == marks.end() ? store::Marks{} : found->second);
  }
  sortForTriage(*sessions);
  co_return checkedText("sessions", wire::SessionsEnvelope{.sessions = std::move(*sessions)});
}

Task<std::string> Conversations::detail(std::string sessionId) {
  auto conversation = co_await m_agent.conversation(sessionId);
  if (!conversation) co_return refusedBy(conversation.error());
  mark(conversation->summary, m_tracking.of(sessionId));
  co_return detailText(*conversation, m_queue.of(sessionId));
}

Task<std::string> Conversations::archived(std::optional<std::string> cursor) {
  std::optional<Cursor> after;
  if (cursor) {
    after = readCursor("archived", *cursor);
    if (!after) co_return refuse(Failure::Kind::Invalid, "This is not a page of the archive.");
  }
  auto sessions = co_await m_agent.archived();
  if (!sessions) co_return refusedBy(sessions.error());
  const auto key = [](const wire::ArchivedSession& session) {
    return std::tuple(-session.updatedAt.value_or(0), std::string_view(session.id));
  };
  std::ranges::sort(*sessions, {}, key);
  co_return checkedText("archived", pageOf(*sessions, after));
}

Task<std::string> Conversations::projects() {
  auto projects = co_await m_agent.projects();
  if (!projects) co_return refusedBy(projects.error());
  co_return checkedText("projects", wire::ProjectsEnvelope{.projects = std::move(*projects)});
}

Task<std::string> Conversations::models() {
  const auto models = co_await m_agent.models();
  if (!models) co_return refusedBy(models.error());
  auto text = json::write(*models);
  if (!text) co_return unsendable("models", text.error());
  co_return std::move(*text);
}

Task<std::string> Conversations::rateLimit() {
  const auto limit = co_await m_agent.rateLimit();
  if (!limit) co_return refusedBy(limit.error());
  co_return checkedText("rate limit", *limit);
}

Task<std::string> Conversations::usage(std::optional<std::string> sessionId) {
  const auto usage = co_await m_agent.usage(std::move(sessionId));
  if (!usage) co_return refusedBy(usage.error());
  co_return checkedText("usage", *usage);
}

}  // namespace varnel::service
