// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the agent's account has used and may still use. Micros are millionths of a credit or of a US dollar.
namespace varnel::wire {

struct RateLimitWindow {
  std::int64_t usedPercent = 0;
  std::optional<std::int64_t> windowDurationMins;  ///< 300 is the five-hour window, 10080 the weekly one
  std::optional<double> resetsAt;                  ///< seconds since 1970, UTC
};
bool operator==(const RateLimitWindow&, const RateLimitWindow&);

struct RateLimitEnvelope {
  std::optional<RateLimitWindow> rateLimit;
};
bool operator==(const RateLimitEnvelope&, const RateLimitEnvelope&);

struct ResetCreditsSummary {
  std::int64_t availableCount = 0;
};
bool operator==(const ResetCreditsSummary&, const ResetCreditsSummary&);

struct UsageSummary {
  std::optional<std::int64_t> currentStreakDays;
  std::optional<std::int64_t> lifetimeTokens;
  std::optional<std::int64_t> longestRunningTurnSec;
  std::optional<std::int64_t> longestStreakDays;
  std::optional<std::int64_t> peakDailyTokens;
};
bool operator==(const UsageSummary&, const UsageSummary&);

struct DailyUsageBucket {
  std::string startDate;  ///< the day as the bridge writes it
  std::int64_t tokens = 0;

  [[nodiscard]] const std::string& identity() const { return startDate; }
};
bool operator==(const DailyUsageBucket&, const DailyUsageBucket&);

struct ThreadUsageGroup {
  std::optional<std::int64_t> cachedInputTokens;
  std::optional<std::int64_t> inputTokens;
  std::optional<std::int64_t> netNewInputTokens;
  std::optional<std::int64_t> outputTokens;
  std::optional<std::int64_t> totalTokens;
  std::optional<std::string> model;
  std::optional<std::string> reasoningEffort;
  std::optional<std::string> speed;
  std::int64_t estimatedUsageCreditsMicros = 0;

  [[nodiscard]] std::string identity() const {
    return model.value_or("unknown") + "-" + reasoningEffort.value_or("unknown") + "-" + speed.value_or("default");
  }
};
bool operator==(const ThreadUsageGroup&, const ThreadUsageGroup&);

struct ThreadUsageSummary {
  std::int64_t estimatedUsageCreditsMicros = 0;
  std::optional<std::int64_t> estimatedUsageUsdMicros;
  std::vector<ThreadUsageGroup> groups;
  std::string threadId;
};
bool operator==(const ThreadUsageSummary&, const ThreadUsageSummary&);

struct UsageEnvelope {
  std::optional<RateLimitWindow> rateLimit;
  std::optional<RateLimitWindow> primary;
  std::optional<RateLimitWindow> secondary;
  std::optional<std::string> planType;
  std::optional<ResetCreditsSummary> resetCredits;
  UsageSummary summary;
  std::vector<DailyUsageBucket> dailyUsageBuckets;
  std::optional<ThreadUsageSummary> threadUsage;
  double fetchedAt = 0;  ///< seconds since 1970, UTC
};
bool operator==(const UsageEnvelope&, const UsageEnvelope&);

}  // namespace varnel::wire
