// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/instantiate.h"
#include "core/wire/pairing_fields.h"

namespace varnel::wire {

VARNEL_RECORD(PairPayload)
VARNEL_RECORD(PairingCredentials)

}  // namespace varnel::wire
