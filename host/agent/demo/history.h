// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "host/agent/demo/demo_conversation.h"
#include "host/agent/demo/library.h"

namespace varnel::agent::demo {

/// A conversation with its past, and what of its last turn is still to come.
struct Told {
  std::unique_ptr<DemoConversation> conversation;
  std::optional<Script> live;
  std::optional<Ask> waiting;
};

/// Tells a written conversation as if it had happened at the times it names, counted back from `now`.
Told tellHistory(const Library::NamedScript& source, std::uint64_t seed, double now);

}  // namespace varnel::agent::demo
