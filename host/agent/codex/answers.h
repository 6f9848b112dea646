// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/wire/request.h"
#include "host/agent/agent.h"

/// The agent's questions to the user. It takes any answer and makes of a wrong one what it likes, so answers are judged
/// here.
namespace varnel::agent::codex {

/// True for a method that a person can answer.
bool isQuestion(const std::string& method);
/// What the user can choose from; nothing that would hold beyond the session.
json::JSONValue::Array decisionsFor(const std::string& method, const json::JSONValue& params);
/// Invalid when the agent would not take the result as it is meant.
Result<void> judge(const wire::PendingRequest& request, const json::JSONValue& result);

}  // namespace varnel::agent::codex
