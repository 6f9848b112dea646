// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/context_use.h"

#include <algorithm>

namespace varnel::transcript {

int contextUsePercent(const wire::ConversationTokenUsage& usage) {
  constexpr double kWhole = 100;
  if (usage.contextWindow < 1 || usage.contextTokens < 0) return 0;
  const double ratio = static_cast<double>(usage.contextTokens) / static_cast<double>(usage.contextWindow);
  return static_cast<int>(std::min(ratio, 1.0) * kWhole);
}

}  // namespace varnel::transcript
