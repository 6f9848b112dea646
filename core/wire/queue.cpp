// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/queue.h"

#include "core/wire/catalogue_fields.h"
#include "core/wire/instantiate.h"
#include "core/wire/queue_fields.h"

namespace varnel::wire {

VARNEL_RECORD(QueuedMessage)
VARNEL_RECORD(QueueEnvelope)

}  // namespace varnel::wire
