// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/conversation_notifications.h"

#include <ranges>
#include <utility>

#include "core/base/percent_encoding.h"
#include "core/json/enum_names.h"
#include "core/live/notification_text.h"

namespace varnel::live {
namespace {

using wire::CodexTurnState;

std::optional<NotificationKind> kindOf(CodexTurnState state) {
  switch (state) {
    case CodexTurnState::NeedsInput:
      return NotificationKind::NeedsInput;
    case CodexTurnState::Failed:
      return NotificationKind::Failed;
    case CodexTurnState::Done:
      return NotificationKind::Done;
    case CodexTurnState::Working:
    case CodexTurnState::Interrupted:
    case CodexTurnState::Stale:
      break;
  }
  return std::nullopt;
}

bool isChosen(NotificationKind kind, const NotificationChoice& choice) {
  switch (kind) {
    case NotificationKind::NeedsInput:
      return choice.needsInput;
    case NotificationKind::Failed:
      return choice.failed;
    case NotificationKind::Done:
      return choice.done;
  }
  return false;
}

std::string_view titleOf(NotificationKind kind) {
  switch (kind) {
    case NotificationKind::NeedsInput:
      return "Codex needs input";
    case NotificationKind::Failed:
      return "Codex stopped with an error";
    case NotificationKind::Done:
      return "Codex is done";
  }
  return {};
}

std::string slotOf(std::string_view sessionId) {
  return "varnel-conversation-" + std::string(sessionId);
}

PostNotification notificationFor(const wire::SessionSummary& session, NotificationKind kind) {
  return {.slot = slotOf(session.id),
          .kind = kind,
          .title = std::string(titleOf(kind)),
          .body = oneLine(session.project),
          .link = "varnel://session/" + base::percentEncode(session.id, base::UrlSet::Unreserved)};
}

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  return lines;
}

}  // namespace

ConversationNotifications::ConversationNotifications(const Memory& memory) {
  for (const auto& [sessionId, text] : memory) {
    if (auto known = parse(text)) m_known.emplace(sessionId, *std::move(known));
  }
}

std::vector<NotificationAction> ConversationNotifications::update(const ConversationsNow& now,
                                                                  const NotificationChoice& choice) {
  std::vector<NotificationAction> actions;
  std::set<std::string_view> listed;
  for (const auto& session : now.sessions) {
    listed.insert(session.id);
    if (auto action = updateOne(session, now, choice)) actions.push_back(*std::move(action));
  }
  for (auto known = m_known.begin(); known != m_known.end();) {
    if (listed.contains(known->first)) {
      ++known;
      continue;
    }
    if (known->second.posted) actions.emplace_back(WithdrawNotification{slotOf(known->first)});
    known = m_known.erase(known);
  }
  return actions;
}

std::optional<NotificationAction> ConversationNotifications::updateOne(const wire::SessionSummary& session,
                                                                       const ConversationsNow& now,
                                                                       const NotificationChoice& choice) {
  const auto found = m_known.find(session.id);
  const bool isKnown = found != m_known.end();
  const Known before = isKnown ? found->second : Known{};
  Known after{.state = session.state, .turnId = session.currentTurnId.value_or("")};
  const bool isSame = isKnown && before.state == after.state && before.turnId == after.turnId;

  const auto open = now.openRequests.find(session.id);
  if (isSame) after.requests = before.requests;
  if (open != now.openRequests.end()) after.requests.insert(open->second.begin(), open->second.end());
  // The requests of a turn become known after its state: the first ones are those that were announced.
  const bool isAskedMore = isSame && !before.requests.empty() && after.requests != before.requests;

  const auto kind = kindOf(session.state);
  const bool isWanted = kind && isChosen(*kind, choice) && now.inView != session.id;
  const bool isNews = kind == NotificationKind::NeedsInput ? !isSame || isAskedMore : isKnown && !isSame;
  after.posted = isWanted && (isNews || (isSame && before.posted));
  m_known.insert_or_assign(session.id, after);

  if (isWanted && isNews) return notificationFor(session, *kind);
  if (before.posted && !after.posted) return WithdrawNotification{slotOf(session.id)};
  return std::nullopt;
}

std::vector<NotificationAction> ConversationNotifications::clear() {
  std::vector<NotificationAction> actions;
  for (const auto& [sessionId, known] : std::exchange(m_known, {})) {
    if (known.posted) actions.emplace_back(WithdrawNotification{slotOf(sessionId)});
  }
  return actions;
}

ConversationNotifications::Memory ConversationNotifications::memory() const {
  Memory memory;
  for (const auto& [sessionId, known] : m_known) memory.emplace(sessionId, write(known));
  return memory;
}

// Lines: the state, "posted" or nothing, the turn, and each announced request. Ids are encoded, so none holds a line
// end.

std::string ConversationNotifications::write(const Known& known) {
  std::string text(json::nameOf(known.state));
  text.append("\n").append(known.posted ? "posted" : "").append("\n");
  text.append(base::percentEncode(known.turnId, base::UrlSet::Unreserved)).append("\n");
  for (const auto& request : known.requests) {
    text.append(base::percentEncode(request, base::UrlSet::Unreserved)).append("\n");
  }
  return text;
}

std::optional<ConversationNotifications::Known> ConversationNotifications::parse(std::string_view text) {
  const auto lines = linesOf(text);
  if (lines.size() < 3) return std::nullopt;
  const auto state = json::fromName<CodexTurnState>(lines[0]);
  const auto turnId = base::percentDecode(lines[2]);
  if (!state || !turnId) return std::nullopt;
  Known known{.state = *state, .turnId = *turnId, .posted = lines[1] == "posted"};
  for (const auto& line : lines | std::views::drop(3)) {
    if (auto request = base::percentDecode(line)) known.requests.insert(*std::move(request));
  }
  return known;
}

}  // namespace varnel::live
