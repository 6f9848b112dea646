// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/instantiate.h"
#include "core/wire/transcript_fields.h"

namespace varnel::wire {

VARNEL_RECORD(TranscriptItem)

}  // namespace varnel::wire
