// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/transcript.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(TranscriptItem, (), (id, type, timestamp, role, phase, title, text, detail, status))

}  // namespace varnel::wire
