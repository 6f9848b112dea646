// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/instantiate.h"
#include "core/wire/usage_fields.h"

namespace varnel::wire {

VARNEL_RECORD(RateLimitWindow)
VARNEL_RECORD(RateLimitEnvelope)
VARNEL_RECORD(ResetCreditsSummary)
VARNEL_RECORD(UsageSummary)
VARNEL_RECORD(DailyUsageBucket)
VARNEL_RECORD(ThreadUsageGroup)
VARNEL_RECORD(ThreadUsageSummary)
VARNEL_RECORD(UsageEnvelope)

}  // namespace varnel::wire
