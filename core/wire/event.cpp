// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/event_fields.h"
#include "core/wire/instantiate.h"

namespace varnel::wire {

VARNEL_RECORD(LiveEvent)

}  // namespace varnel::wire
