// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/usage.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(RateLimitWindow, (), (usedPercent, windowDurationMins, resetsAt))
BOOST_DESCRIBE_STRUCT(RateLimitEnvelope, (), (rateLimit))
BOOST_DESCRIBE_STRUCT(ResetCreditsSummary, (), (availableCount))
BOOST_DESCRIBE_STRUCT(UsageSummary, (),
                      (currentStreakDays, lifetimeTokens, longestRunningTurnSec, longestStreakDays, peakDailyTokens))
BOOST_DESCRIBE_STRUCT(DailyUsageBucket, (), (startDate, tokens))
BOOST_DESCRIBE_STRUCT(ThreadUsageGroup, (),
                      (cachedInputTokens, inputTokens, netNewInputTokens, outputTokens, totalTokens, model,
                       reasoningEffort, speed, estimatedUsageCreditsMicros))
BOOST_DESCRIBE_STRUCT(ThreadUsageSummary, (), (estimatedUsageCreditsMicros, estimatedUsageUsdMicros, groups, threadId))
BOOST_DESCRIBE_STRUCT(UsageEnvelope, (),
                      (rateLimit, primary, secondary, planType, resetCredits, summary, dailyUsageBuckets, threadUsage,
                       fetchedAt))

}  // namespace varnel::wire
