// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/catalogue_fields.h"
#include "core/wire/instantiate.h"

namespace varnel::wire {

VARNEL_RECORD(ProjectRecord)
VARNEL_RECORD(ProjectsEnvelope)
VARNEL_RECORD(ServiceTierOption)
VARNEL_RECORD(ModelOption)
VARNEL_RECORD(UploadedAttachment)

}  // namespace varnel::wire
