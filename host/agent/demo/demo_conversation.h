// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "core/wire/request.h"
#include "core/wire/session.h"
#include "core/wire/transcript.h"
#include "host/agent/agent.h"
#include "host/agent/demo/ids.h"
#include "host/agent/plain_line.h"

namespace varnel::agent::demo {

inline constexpr std::int64_t kContextWindow = 258'400;

/// One conversation as the demo agent remembers it.
struct DemoConversation {
  wire::SessionSummary summary;
  std::vector<wire::TranscriptItem> items;
  std::vector<wire::PendingRequest> requests;  ///< the open ones
  std::set<std::string> closedRequests;        ///< ids of those that were answered or withdrawn
  IdStream ids;
  std::string sandbox = "workspace-write";
  std::string approvalPolicy = "on-request";
  std::set<std::string> allowedForSession;  ///< titles of what was approved for the session
  std::set<std::string> heard;              ///< `clientMessageId`s
  std::size_t turns = 0;
  std::size_t messages = 0;  ///< received since the start, steering ones included
  bool archived = false;
};

/// What all conversations have around them.
struct Stage {
  std::uint64_t seed = 1;
  double speed = 1.0;
  std::function<double()> now;
  /// Tells the bridge; does nothing before the start and after the stop.
  std::function<void(const Change&)> report;
  /// Counts tokens to the account.
  std::function<void(std::int64_t tokens)> spend;
};

}  // namespace varnel::agent::demo
