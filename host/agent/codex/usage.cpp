// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// The account's usage and limits.
#include "host/agent/codex/codex_agent.h"
#include "host/agent/codex/json_access.h"

namespace varnel::agent::codex {

using Object = JSONValue::Object;

namespace {

std::optional<wire::RateLimitWindow> windowOf(const JSONValue& limits, std::string_view name) {
  const auto& window = memberOf(limits, name);
  const auto used = wholeOf(window, "usedPercent");
  if (!used) return std::nullopt;
  return wire::RateLimitWindow{.usedPercent = *used,
                               .windowDurationMins = wholeOf(window, "windowDurationMins"),
                               .resetsAt = numberOf(window, "resetsAt")};
}

/// The window that is nearest to its end.
std::optional<wire::RateLimitWindow> limiting(const std::optional<wire::RateLimitWindow>& primary,
                                              const std::optional<wire::RateLimitWindow>& secondary) {
  if (!primary || (secondary && secondary->usedPercent > primary->usedPercent)) return secondary;
  return primary;
}

wire::UsageSummary summaryOf(const JSONValue& usage) {
  const auto& summary = memberOf(usage, "summary");
  return {.currentStreakDays = wholeOf(summary, "currentStreakDays"),
          .lifetimeTokens = wholeOf(summary, "lifetimeTokens"),
          .longestRunningTurnSec = wholeOf(summary, "longestRunningTurnSec"),
          .longestStreakDays = wholeOf(summary, "longestStreakDays"),
          .peakDailyTokens = wholeOf(summary, "peakDailyTokens")};
}

std::vector<wire::DailyUsageBucket> bucketsOf(const JSONValue& usage) {
  std::vector<wire::DailyUsageBucket> buckets;
  for (const auto& bucket : listOf(usage, "dailyUsageBuckets")) {
    buckets.push_back({.startDate = textOf(bucket, "startDate"), .tokens = wholeOf(bucket, "tokens").value_or(0)});
  }
  return buckets;
}

wire::ThreadUsageGroup groupOf(const JSONValue& group) {
  return {.cachedInputTokens = wholeOf(group, "cachedInputTokens"),
          .inputTokens = wholeOf(group, "inputTokens"),
          .netNewInputTokens = wholeOf(group, "netNewInputTokens"),
          .outputTokens = wholeOf(group, "outputTokens"),
          .totalTokens = wholeOf(group, "totalTokens"),
          .model = optionalTextOf(group, "model"),
          .reasoningEffort = optionalTextOf(group, "reasoningEffort"),
          .speed = optionalTextOf(group, "speed"),
          .estimatedUsageCreditsMicros = wholeOf(group, "estimatedUsageCreditsMicros").value_or(0)};
}

std::optional<wire::ThreadUsageSummary> threadUsageOf(const JSONValue& usage) {
  const auto& thread = memberOf(usage, "threadUsage");
  if (thread.object() == nullptr) return std::nullopt;
  wire::ThreadUsageSummary summary{
      .estimatedUsageCreditsMicros = wholeOf(thread, "estimatedUsageCreditsMicros").value_or(0),
      .estimatedUsageUsdMicros = wholeOf(thread, "estimatedUsageUsdMicros"),
      .groups = {},
      .threadId = textOf(thread, "threadId")};
  for (const auto& group : listOf(thread, "groups")) summary.groups.push_back(groupOf(group));
  return summary;
}

/// Who is not signed in has no account to ask about, which is no failure.
bool isSignedOut(const AgentError& error) {
  return error.text.contains("authentication required");
}

}  // namespace

Task<wire::RateLimitEnvelope> CodexAgent::rateLimit() {
  if (const auto read = co_await call("account/rateLimits/read", Object{})) {
    m_feed.mergeRateLimits(memberOf(*read, "rateLimits"));
  } else if (!isSignedOut(read.error()) && m_feed.rateLimits.object() == nullptr) {
    co_return std::unexpected(read.error());
  }
  co_return wire::RateLimitEnvelope{
      .rateLimit = limiting(windowOf(m_feed.rateLimits, "primary"), windowOf(m_feed.rateLimits, "secondary"))};
}

Task<wire::UsageEnvelope> CodexAgent::usage(std::optional<std::string> sessionId) {
  wire::UsageEnvelope envelope;
  envelope.fetchedAt = m_options.now();
  if (const auto read = co_await call("account/rateLimits/read", Object{})) {
    m_feed.mergeRateLimits(memberOf(*read, "rateLimits"));
    const auto credits = wholeOf(memberOf(*read, "rateLimitResetCredits"), "availableCount");
    if (credits) envelope.resetCredits = wire::ResetCreditsSummary{.availableCount = *credits};
  } else if (!isSignedOut(read.error())) {
    co_return std::unexpected(read.error());
  }
  envelope.primary = windowOf(m_feed.rateLimits, "primary");
  envelope.secondary = windowOf(m_feed.rateLimits, "secondary");
  envelope.rateLimit = limiting(envelope.primary, envelope.secondary);
  envelope.planType = optionalTextOf(m_feed.rateLimits, "planType");
  if (const auto read = co_await call("account/usage/read", Object{})) {
    envelope.summary = summaryOf(*read);
    envelope.dailyUsageBuckets = bucketsOf(*read);
  } else if (!isSignedOut(read.error())) {
    co_return std::unexpected(read.error());
  }
  if (!sessionId) co_return envelope;
  if (const auto read = co_await call("account/usage/read", Object{{"threadId", *sessionId}})) {
    envelope.threadUsage = threadUsageOf(*read);
  } else if (!isSignedOut(read.error())) {
    co_return std::unexpected(read.error());
  }
  co_return envelope;
}

}  // namespace varnel::agent::codex
