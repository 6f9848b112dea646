// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/queue.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(QueuedMessage, (), (id, createdAt, text, attachments, failure))
BOOST_DESCRIBE_STRUCT(QueueEnvelope, (), (queued))

}  // namespace varnel::wire
