// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "core/wire/event.h"

/// What an event of the stream calls for.
namespace varnel::live {

/// Let the live activity judge the event.
struct ApplyToActivity {
  wire::LiveEvent event;
  bool operator==(const ApplyToActivity&) const = default;
};

/// Re-read the lists: conversations, projects, models.
struct RefreshLists {
  bool includeRateLimit = false;
  bool operator==(const RefreshLists&) const = default;
};

struct RefreshRateLimit {
  bool operator==(const RefreshRateLimit&) const = default;
};

struct LoadSession {
  std::string sessionId;
  bool operator==(const LoadSession&) const = default;
};

using EventAction = std::variant<ApplyToActivity, RefreshLists, RefreshRateLimit, LoadSession>;

/// The actions for one event, to be performed in this order, each to its end. Types that are not known call for
/// no request but the reload of the conversation they name.
std::vector<EventAction> actionsFor(wire::LiveEvent event);

}  // namespace varnel::live
