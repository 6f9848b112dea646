// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/event.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(LiveEvent, (), (sequence, type, timestamp, sessionId, turnId, payload))

}  // namespace varnel::wire
