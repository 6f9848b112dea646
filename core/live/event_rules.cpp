// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/event_rules.h"

namespace varnel::live {

std::vector<EventAction> actionsFor(const wire::LiveEvent& event) {
  if (event.type == "snapshot.required") return {RefreshLists{.includeRateLimit = true}};
  std::vector<EventAction> actions;
  if (event.type == "usage.updated") actions.emplace_back(RefreshRateLimit{});
  if (event.sessionId) actions.emplace_back(LoadSession{*event.sessionId});
  if (event.type == "tracking.changed" || event.type == "activity.updated") actions.emplace_back(RefreshLists{});
  return actions;
}

}  // namespace varnel::live
