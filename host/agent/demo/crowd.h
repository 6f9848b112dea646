// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/agent/demo/demo_conversation.h"

/// Conversations that are there to be many or long rather than to be read.
namespace varnel::agent::demo {

/// The archive: ended conversations of the last months, from one line each.
std::vector<std::unique_ptr<DemoConversation>> makeArchived(std::uint64_t seed, double now);

/// One finished conversation with exactly `count` items; about a microsecond's worth of work for each hundred bytes.
std::unique_ptr<DemoConversation> makeLarge(std::uint64_t seed, double now, std::size_t count);

/// The `index`th of many short ones, older the higher the index.
std::unique_ptr<DemoConversation> makeExtra(std::uint64_t seed, double now, std::size_t index);

}  // namespace varnel::agent::demo
