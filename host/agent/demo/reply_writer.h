// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "host/agent/demo/demo_conversation.h"
#include "host/agent/demo/library.h"
#include "host/agent/demo/script.h"

namespace varnel::agent::demo {

/// What the agent does about a message: a script chosen by its words, else by chance, with the user's own words in it.
/// Depends on nothing but the seed, the conversation's id and settings, how many messages it had, and the message.
///
/// Asks first when a word calls for it ("deploy", "delete", "approve", ...), and every fourth message of a conversation
/// otherwise, never at the first.
Script writeReply(std::uint64_t seed, const DemoConversation& conversation, const TurnInput& input);

/// The turn of that number, from 0, on the way to a goal; nothing when the goal is reached.
std::optional<Script> writeGoalTurn(const DemoConversation& conversation, const TurnInput& input, std::size_t turn);

}  // namespace varnel::agent::demo
