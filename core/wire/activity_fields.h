// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/activity.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(CodexTurnAttributes, (), (sessionId, turnId, project))
BOOST_DESCRIBE_STRUCT(CodexTurnAttributes::ContentState, (), (state, message, updatedAt, sequence))

}  // namespace varnel::wire
