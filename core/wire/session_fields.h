// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/session.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(ConversationPreferences, (), (mode, model, reasoningEffort, serviceTier))
BOOST_DESCRIBE_STRUCT(ConversationPlanStep, (), (step, status))
BOOST_DESCRIBE_STRUCT(ConversationPlan, (), (turnId, explanation, steps, completed, updatedAt))
BOOST_DESCRIBE_STRUCT(ConversationTokenUsage, (),
                      (contextTokens, contextWindow, inputTokens, outputTokens, reasoningTokens))
BOOST_DESCRIBE_STRUCT(SessionSummary, (),
                      (id, name, cwd, project, active, state, currentTurnId, latestCommentary, updatedAt, pinned,
                       tracked, tokenUsage, turnPreferences, plan))
BOOST_DESCRIBE_STRUCT(SessionsEnvelope, (), (sessions))

}  // namespace varnel::wire
