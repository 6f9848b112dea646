// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/usage_book.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "host/agent/demo/ids.h"

namespace varnel::agent::demo {

namespace {

constexpr int kDays = 30;
constexpr std::int64_t kLifetimeBefore = 214'600'000;

std::string dayText(std::chrono::sys_days day) {
  const std::chrono::year_month_day date(day);
  const auto padded = [](unsigned number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return std::to_string(static_cast<int>(date.year())) + "-" + padded(static_cast<unsigned>(date.month())) + "-" +
         padded(static_cast<unsigned>(date.day()));
}

std::chrono::sys_days dayOf(double seconds) {
  return std::chrono::floor<std::chrono::days>(
      std::chrono::sys_seconds(std::chrono::seconds(static_cast<std::int64_t>(seconds))));
}

wire::ThreadUsageGroup groupOf(const wire::ConversationPreferences& preferences, std::int64_t input,
                               std::int64_t output) {
  const std::int64_t cached = input * 7 / 10;
  return {.cachedInputTokens = cached,
          .inputTokens = input,
          .netNewInputTokens = input - cached,
          .outputTokens = output,
          .totalTokens = input + output,
          .model = preferences.model,
          .reasoningEffort = preferences.reasoningEffort,
          .speed = preferences.serviceTier,
          .estimatedUsageCreditsMicros = (input - cached) * 31 + cached * 3 + output * 250};
}

wire::ThreadUsageSummary threadUsage(const DemoConversation& conversation) {
  wire::ThreadUsageSummary result;
  result.threadId = conversation.summary.id;
  const auto& tokens = conversation.summary.tokenUsage;
  const auto& preferences = conversation.summary.turnPreferences;
  if (!tokens || !preferences) return result;
  const std::int64_t input = tokens->inputTokens.value_or(0);
  const std::int64_t output = tokens->outputTokens.value_or(0);
  result.groups.push_back(groupOf(*preferences, input, output));
  if (conversation.turns > 1) {
    // Long conversations hand small work to a small model.
    const wire::ConversationPreferences small{
        .mode = {}, .model = "gpt-5.6-luna", .reasoningEffort = "low", .serviceTier = std::nullopt};
    if (small.model != preferences->model) result.groups.push_back(groupOf(small, input / 9, output / 6));
  }
  for (const auto& group : result.groups) result.estimatedUsageCreditsMicros += group.estimatedUsageCreditsMicros;
  result.estimatedUsageUsdMicros = result.estimatedUsageCreditsMicros / 25;
  return result;
}

}  // namespace

UsageBook::UsageBook(std::uint64_t seed, std::function<double()> now)
    : m_seed(seed), m_now(std::move(now)), m_startedAt(m_now()) {
  IdStream chance(seed, "usage");
  const auto part = [&](std::int64_t allowance, std::size_t percent) {
    return allowance * static_cast<std::int64_t>(percent) / 100;
  };
  m_primary = {.minutes = 300, .allowance = 4'000'000, .used = 0, .resetsAt = m_startedAt + 2 * 3600 + 14 * 60};
  m_primary.used = part(m_primary.allowance, 36 + chance.below(20));
  m_secondary = {.minutes = 10080, .allowance = 40'000'000, .used = 0, .resetsAt = m_startedAt + 3 * 86400 + 5 * 3600};
  m_secondary.used = part(m_secondary.allowance, 58 + chance.below(14));
}

void UsageBook::spend(std::int64_t tokens) {
  turnOver();
  m_primary.used += tokens;
  m_secondary.used += tokens;
  m_spent += tokens;
}

void UsageBook::turnOver() {
  for (Window* window : {&m_primary, &m_secondary}) {
    const double length = static_cast<double>(window->minutes) * 60;
    if (m_now() < window->resetsAt) continue;
    window->used = 0;
    window->resetsAt += length * (1 + std::floor((m_now() - window->resetsAt) / length));
  }
}

wire::RateLimitWindow UsageBook::recordOf(const Window& window) {
  return {.usedPercent = std::min<std::int64_t>(100, window.used * 100 / window.allowance),
          .windowDurationMins = window.minutes,
          .resetsAt = window.resetsAt};
}

wire::RateLimitEnvelope UsageBook::rateLimit() {
  turnOver();
  const wire::RateLimitWindow primary = recordOf(m_primary);
  const wire::RateLimitWindow secondary = recordOf(m_secondary);
  return {primary.usedPercent >= secondary.usedPercent ? primary : secondary};
}

std::vector<wire::DailyUsageBucket> UsageBook::days() {
  std::vector<wire::DailyUsageBucket> result;
  const std::chrono::sys_days today = dayOf(m_now());
  for (int back = kDays - 1; back >= 0; --back) {
    const std::chrono::sys_days day = today - std::chrono::days(back);
    // Counted from the day of the start: a night that passes does not change the days before.
    const auto index = (day - dayOf(m_startedAt)).count();
    IdStream chance(m_seed, "day " + std::to_string(index));
    const unsigned weekday = std::chrono::weekday(day).c_encoding();
    const bool weekend = weekday == 0 || weekday == 6;
    const auto tokens =
        static_cast<std::int64_t>(chance.below(weekend ? 900'000 : 3'400'000)) + (weekend ? 0 : 600'000);
    result.push_back({dayText(day), index == -17 ? 0 : tokens});
  }
  result.back().tokens = result.back().tokens / 2 + m_spent;
  return result;
}

wire::UsageEnvelope UsageBook::usage(const DemoConversation* conversation) {
  wire::UsageEnvelope envelope;
  envelope.rateLimit = rateLimit().rateLimit;
  envelope.primary = recordOf(m_primary);
  envelope.secondary = recordOf(m_secondary);
  envelope.planType = "plus";
  envelope.resetCredits = wire::ResetCreditsSummary{2};
  envelope.dailyUsageBuckets = days();
  const auto peak = std::ranges::max_element(envelope.dailyUsageBuckets, {}, &wire::DailyUsageBucket::tokens);
  envelope.summary = {.currentStreakDays = 17,
                      .lifetimeTokens = kLifetimeBefore + m_spent,
                      .longestRunningTurnSec = 2'940,
                      .longestStreakDays = 41,
                      .peakDailyTokens = std::max<std::int64_t>(peak->tokens, 5'270'000)};
  if (conversation != nullptr) envelope.threadUsage = threadUsage(*conversation);
  envelope.fetchedAt = m_now();
  return envelope;
}

}  // namespace varnel::agent::demo
