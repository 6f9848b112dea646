// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/json/value.h"
#include "core/wire/transcript.h"
#include "host/agent/codex/thread.h"
#include "host/store/agent_memory.h"

namespace varnel::agent::codex {

/// How a text that the bridge adds to a message for an attached file begins; it is no part of what the user wrote.
inline constexpr std::string_view kFileNote = "The user attached a file: ";

/// An item of the agent as a phone shows it. A plan that is proposed is a message, or nobody would see it; long output
/// is cut, with a mark where.
wire::TranscriptItem transcriptItem(const JSONValue& item, const std::string& turnId, double at);

/// The stored turns, with what is not stored laid over them: items of the running turn, and those that `known` holds.
std::vector<wire::TranscriptItem> transcriptOf(const JSONValue::Array& turns, const Thread& thread,
                                               const std::vector<store::AgentMemory::Item>& known);

/// When an id was made that holds its time, as the agent's own do; seconds since 1970.
std::optional<double> timeOfId(std::string_view id);

}  // namespace varnel::agent::codex
