// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/rate_limit.h"

namespace varnel::live {

std::optional<wire::RateLimitWindow> shownWindow(const wire::UsageEnvelope& usage) {
  return usage.primary ? usage.primary : usage.rateLimit;
}

}  // namespace varnel::live
