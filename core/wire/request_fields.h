// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/request.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(PendingRequest, (),
                      (id, method, sessionId, turnId, createdAt, params, availableDecisions, resolved))

}  // namespace varnel::wire
