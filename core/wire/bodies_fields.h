// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/bodies.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(EmptyBody, (), ())
BOOST_DESCRIBE_STRUCT(ServerError, (), (error))
BOOST_DESCRIBE_STRUCT(ClaimBody, (), (secret, deviceName))
BOOST_DESCRIBE_STRUCT(ClaimResult, (), (deviceId, token))
BOOST_DESCRIBE_STRUCT(RenameBody, (), (name))
BOOST_DESCRIBE_STRUCT(MessageBody, (), (text, mode, model, reasoningEffort, serviceTier, attachments))
BOOST_DESCRIBE_STRUCT(GoalBody, (), (objective, mode, model, reasoningEffort, serviceTier, attachments))
BOOST_DESCRIBE_STRUCT(SettingsBody, (), (mode, model, reasoningEffort, serviceTier))
BOOST_DESCRIBE_STRUCT(NewSessionBody, (),
                      (cwd, mode, model, reasoningEffort, sandbox, approvalPolicy, acknowledgeHighRisk, prompt))
BOOST_DESCRIBE_STRUCT(NewSessionResult, (), (threadId))
BOOST_DESCRIBE_STRUCT(ResolveBody, (), (result))
BOOST_DESCRIBE_STRUCT(TrackingBody, (), (sessionId, pin, action))

}  // namespace varnel::wire
