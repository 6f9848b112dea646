// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/bodies_fields.h"
#include "core/wire/catalogue_fields.h"
#include "core/wire/instantiate.h"

namespace varnel::wire {

VARNEL_RECORD(EmptyBody)
VARNEL_RECORD(ServerError)
VARNEL_RECORD(ClaimBody)
VARNEL_RECORD(ClaimResult)
VARNEL_RECORD(RenameBody)
VARNEL_RECORD(MessageBody)
VARNEL_RECORD(GoalBody)
VARNEL_RECORD(SettingsBody)
VARNEL_RECORD(NewSessionBody)
VARNEL_RECORD(NewSessionResult)
VARNEL_RECORD(ResolveBody)
VARNEL_RECORD(TrackingBody)

}  // namespace varnel::wire
