// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/activity_fields.h"
#include "core/wire/instantiate.h"

namespace varnel::wire {

VARNEL_RECORD(CodexTurnAttributes)
VARNEL_RECORD(CodexTurnAttributes::ContentState)

}  // namespace varnel::wire
