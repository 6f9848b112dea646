// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/event_rules.h"

#include <utility>

namespace varnel::live {

std::vector<EventAction> actionsFor(wire::LiveEvent event) {
  if (event.type == "snapshot.required") return {RefreshLists{.includeRateLimit = true}};
  const bool showsInLists = event.type == "tracking.changed" || event.type == "activity.updated";
  std::vector<EventAction> actions;
  if (event.type == "usage.updated") actions.emplace_back(RefreshRateLimit{});
  if (event.sessionId) actions.emplace_back(LoadSession{*event.sessionId});
  if (showsInLists) actions.emplace_back(RefreshLists{});
  actions.insert(actions.begin(), ApplyToActivity{std::move(event)});
  return actions;
}

}  // namespace varnel::live
