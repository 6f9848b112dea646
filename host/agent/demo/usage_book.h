// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "core/wire/usage.h"
#include "host/agent/demo/demo_conversation.h"

namespace varnel::agent::demo {

/// The account's books: two windows that fill and reset, thirty days behind today, and what each conversation cost.
class UsageBook {
 public:
  UsageBook(std::uint64_t seed, std::function<double()> now);

  void spend(std::int64_t tokens);
  wire::RateLimitEnvelope rateLimit();
  /// With the share of one conversation, when one is given.
  wire::UsageEnvelope usage(const DemoConversation* conversation);

 private:
  struct Window {
    std::int64_t minutes = 0;
    std::int64_t allowance = 0;  ///< tokens
    std::int64_t used = 0;
    double resetsAt = 0;
  };

  void turnOver();
  static wire::RateLimitWindow recordOf(const Window& window);
  std::vector<wire::DailyUsageBucket> days();

  std::uint64_t m_seed;
  std::function<double()> m_now;
  Window m_primary;
  Window m_secondary;
  double m_startedAt;
  std::int64_t m_spent = 0;  ///< since the start
};

}  // namespace varnel::agent::demo
