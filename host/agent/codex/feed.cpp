// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/feed.h"

#include <algorithm>

#include "core/json/text.h"
#include "host/agent/codex/answers.h"
#include "host/agent/codex/items.h"
#include "host/agent/codex/json_access.h"
#include "host/agent/plain_line.h"

namespace varnel::agent::codex {

using Kind = Change::Kind;

const std::map<std::string, Feed::Handler, std::less<>>& Feed::handlers() {
  static const std::map<std::string, Handler, std::less<>> kHandlers{
      {"thread/started", &Feed::onStarted},
      {"thread/status/changed", &Feed::onStatus},
      {"thread/archived", &Feed::onArchived},
      {"thread/unarchived", &Feed::onUnarchived},
      {"thread/deleted", &Feed::onDeleted},
      {"thread/closed", &Feed::onClosed},
      {"thread/name/updated", &Feed::onName},
      {"thread/settings/updated", &Feed::onSettings},
      {"thread/tokenUsage/updated", &Feed::onTokenUsage},
      {"turn/started", &Feed::onTurnStarted},
      {"turn/completed", &Feed::onTurnCompleted},
      {"turn/plan/updated", &Feed::onPlan},
      {"item/started", &Feed::onItemStarted},
      {"item/completed", &Feed::onItemCompleted},
      {"item/agentMessage/delta", &Feed::onMessageDelta},
      {"error", &Feed::onError},
      {"serverRequest/resolved", &Feed::onResolved},
      {"account/rateLimits/updated", &Feed::onRateLimits},
  };
  return kHandlers;
}

void Feed::notified(const std::string& method, const JSONValue& params) {
  const auto handler = handlers().find(method);
  if (handler != handlers().end()) (this->*handler->second)(params);
}

Thread* Feed::find(const std::string& id) {
  const auto found = threads.find(id);
  return found == threads.end() ? nullptr : &found->second;
}

Thread& Feed::add(const std::string& id) {
  auto& thread = threads[id];
  thread.id = id;
  return thread;
}

std::string Feed::rootOf(const std::string& threadId) const {
  std::string root = threadId;
  // No longer than there are parents, should they ever form a ring.
  for (std::size_t i = 0; i <= parents.size(); ++i) {
    const auto parent = parents.find(root);
    if (parent == parents.end()) break;
    root = parent->second;
  }
  return root;
}

bool Feed::hasRequests(const std::string& id) const {
  return std::ranges::any_of(requests, [&](const auto& entry) { return entry.second.request.sessionId == id; });
}

void Feed::adopt(const std::string& child, const std::string& parent) {
  if (child.empty() || child == parent) return;
  parents[child] = parent;
  threads.erase(child);
  const auto root = rootOf(child);
  for (auto& [id, open] : requests) {
    if (rootOf(open.threadId) != root) continue;
    open.request.sessionId = root;
    if (const auto* thread = find(root)) report(Kind::Request, *thread);
  }
}

void Feed::report(Kind kind, const Thread& thread, std::optional<std::string> turnId) const {
  m_hooks.report({.kind = kind, .sessionId = thread.id, .turnId = std::move(turnId)});
}

void Feed::touch(Thread& thread) {
  thread.updatedAt = std::max(thread.updatedAt, m_hooks.now());
}

Thread* Feed::threadOf(const JSONValue& params) {
  return find(textOf(params, "threadId"));
}

void Feed::onStarted(const JSONValue& params) {
  const auto& record = memberOf(params, "thread");
  const auto id = textOf(record, "id");
  const auto parent = optionalTextOf(record, "parentThreadId");
  if (id.empty()) return;
  if (parent) {
    adopt(id, *parent);
    return;
  }
  auto& thread = add(id);
  takeRecord(thread, record);
  report(Kind::List, thread);
}

void Feed::onStatus(const JSONValue& params) {
  const auto id = textOf(params, "threadId");
  if (parents.contains(id)) return;
  auto* thread = find(id);
  if (thread == nullptr) {
    // To follow is to load, and what is loaded for no reason may begin to work.
    if (textOf(memberOf(params, "status"), "type") != "notLoaded") m_hooks.follow(id);
    return;
  }
  takeStatus(*thread, memberOf(params, "status"));
  if (thread->active) touch(*thread);
  if (thread->loaded && !thread->followed) m_hooks.follow(id);
  report(Kind::Turn, *thread, thread->turn);
}

void Feed::onArchived(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  thread->archived = true;
  takeStatus(*thread, JSONValue());
  report(Kind::List, *thread);
}

void Feed::onUnarchived(const JSONValue& params) {
  auto& thread = add(textOf(params, "threadId"));
  thread.archived = false;
  thread.begun = true;
  report(Kind::List, thread);
}

void Feed::onDeleted(const JSONValue& params) {
  const auto* thread = threadOf(params);
  if (thread == nullptr) return;
  const Thread gone = *thread;
  threads.erase(gone.id);
  report(Kind::List, gone);
}

void Feed::onClosed(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  takeStatus(*thread, JSONValue());
  report(Kind::Turn, *thread);
}

void Feed::onName(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  thread->name = optionalTextOf(params, "threadName");
  report(Kind::Settings, *thread);
}

void Feed::onSettings(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  takeSettings(*thread, memberOf(params, "threadSettings"));
  threadsToKeep.insert(thread->id);
  report(Kind::Settings, *thread);
}

void Feed::onTokenUsage(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  takeTokenUsage(*thread, memberOf(params, "tokenUsage"));
  threadsToKeep.insert(thread->id);
  report(Kind::Settings, *thread);
}

void Feed::onTurnStarted(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  const auto turn = textOf(memberOf(params, "turn"), "id");
  if (thread->turn != turn) thread->live.clear();
  thread->turn = turn;
  thread->active = thread->loaded = thread->begun = true;
  thread->broken = false;
  touch(*thread);
  report(Kind::Turn, *thread, turn);
}

void Feed::onTurnCompleted(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  const auto& turn = memberOf(params, "turn");
  takeLastTurn(*thread, turn);
  const auto id = thread->memory.last.id;
  // A turn that follows by itself may have begun before this was told.
  if (!thread->turn || thread->turn == id) {
    thread->turn.reset();
    thread->active = thread->waiting = false;
    thread->live.clear();
  }
  touch(*thread);
  thread->memory.readAt = thread->updatedAt;
  threadsToKeep.insert(thread->id);
  std::erase_if(requests, [&](const auto& entry) {
    return entry.second.threadId == thread->id && entry.second.request.turnId == id;
  });
  report(Kind::Turn, *thread, id);
}

void Feed::onPlan(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  takePlan(*thread, params, m_hooks.now());
  threadsToKeep.insert(thread->id);
  report(Kind::Plan, *thread, thread->turn);
}

void Feed::onItemStarted(const JSONValue& params) {
  takeItem(params, numberOf(params, "startedAtMs").value_or(m_hooks.now() * 1000) / 1000, false);
}

void Feed::onItemCompleted(const JSONValue& params) {
  takeItem(params, numberOf(params, "completedAtMs").value_or(m_hooks.now() * 1000) / 1000, true);
}

void Feed::takeItem(const JSONValue& params, double at, bool isOver) {
  const auto& item = memberOf(params, "item");
  const auto id = textOf(item, "id");
  const auto type = textOf(item, "type");
  auto* thread = threadOf(params);
  if (thread == nullptr || id.empty()) return;
  const auto turnId = textOf(params, "turnId");
  if (type == "subAgentActivity") adopt(textOf(item, "agentThreadId"), thread->id);
  auto known = std::ranges::find_if(thread->live, [&](const auto& live) { return textOf(live.item, "id") == id; });
  if (known != thread->live.end()) {
    // An item stands where it began.
    known->item = item;
    at = known->at;
  } else if (!isOver || thread->turn == turnId) {
    thread->live.push_back({.turnId = turnId, .item = item, .at = at});
  }
  if (type == "agentMessage" && isOver) thread->memory.commentary = plainLine(textOf(item, "text"));
  const auto status = textOf(item, "status");
  const bool isForgotten = status == "declined" || (!isOver && status == "inProgress");
  if (isForgotten || !timeOfId(id)) {
    itemsToKeep.push_back({.id = id,
                           .threadId = thread->id,
                           .turnId = turnId,
                           .at = at,
                           .body = isForgotten ? std::optional(json::write(item).value_or("null")) : std::nullopt});
  }
  touch(*thread);
  report(Kind::Item, *thread, turnId);
}

void Feed::onMessageDelta(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr) return;
  const auto id = textOf(params, "itemId");
  const auto live = std::ranges::find_if(thread->live, [&](const auto& one) { return textOf(one.item, "id") == id; });
  if (live == thread->live.end() || live->item.object() == nullptr) return;
  auto& text = (*live->item.object())["text"];
  const std::string grown = (text.string() == nullptr ? "" : *text.string()) + textOf(params, "delta");
  text = grown;
  thread->memory.commentary = plainLine(grown);
  touch(*thread);
  report(Kind::Item, *thread, thread->turn);
}

/// While it tries to reach its service again the agent is at work for ever: the user shall see on what.
void Feed::onError(const JSONValue& params) {
  auto* thread = threadOf(params);
  if (thread == nullptr || !flagOf(params, "willRetry")) return;
  thread->memory.commentary = plainLine(textOf(memberOf(params, "error"), "message"));
  report(Kind::Turn, *thread, thread->turn);
}

void Feed::asked(const std::string& serverId, const JSONValue& id, const std::string& method, const JSONValue& params) {
  const std::string number = id.string() != nullptr ? *id.string() : json::write(id).value_or("");
  const auto threadId = textOf(params, "threadId");
  Open open{.request = {}, .id = id, .threadId = threadId};
  auto& request = open.request;
  request.id = serverId + "-" + number;
  request.method = method;
  request.sessionId = rootOf(threadId);
  request.turnId = optionalTextOf(params, "turnId");
  request.createdAt = numberOf(params, "startedAtMs").value_or(m_hooks.now() * 1000) / 1000;
  request.params = objectOf(params);
  request.availableDecisions = decisionsFor(method, params);
  auto* thread = find(threadId);
  const auto itemId = textOf(params, "itemId");
  if (thread != nullptr && !itemId.empty() && !request.params.contains("changes")) {
    for (const auto& live : thread->live) {
      // A change is not to be approved unseen.
      if (textOf(live.item, "id") == itemId && live.item.member("changes") != nullptr) {
        request.params["changes"] = memberOf(live.item, "changes");
      }
    }
  }
  const auto again = requests.find(request.id);
  if (again != requests.end()) {
    request.createdAt = again->second.request.createdAt;
    if (!request.params.contains("changes") && again->second.request.params.contains("changes")) {
      request.params["changes"] = again->second.request.params.at("changes");
    }
  }
  const auto root = request.sessionId;
  requests.insert_or_assign(request.id, std::move(open));
  if (thread == nullptr && root == threadId) m_hooks.follow(threadId);
  if (const auto* shown = find(root)) report(Kind::Request, *shown);
}

void Feed::onResolved(const JSONValue& params) {
  const auto threadId = textOf(params, "threadId");
  const auto& id = memberOf(params, "requestId");
  const auto root = rootOf(threadId);
  std::erase_if(requests,
                [&](const auto& entry) { return entry.second.threadId == threadId && entry.second.id == id; });
  if (const auto* thread = find(root)) report(Kind::Request, *thread);
}

void Feed::mergeRateLimits(const JSONValue& told) {
  if (rateLimits.object() == nullptr) rateLimits = JSONValue::Object{};
  for (const auto& [name, value] : objectOf(told)) {
    if (!value.isNull()) (*rateLimits.object())[name] = value;
  }
}

void Feed::onRateLimits(const JSONValue& params) {
  const auto before = rateLimits;
  mergeRateLimits(memberOf(params, "rateLimits"));
  if (rateLimits != before) m_hooks.report({.kind = Kind::Usage});
}

void Feed::disconnected() {
  requests.clear();
  for (auto& [id, thread] : threads) {
    const bool wasActive = thread.active;
    takeStatus(thread, JSONValue());
    thread.live.clear();
    if (wasActive) thread.memory.readAt = -1;
  }
}

}  // namespace varnel::agent::codex
