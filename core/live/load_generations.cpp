// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/load_generations.h"

namespace varnel::live {

LoadGenerations::Generation LoadGenerations::begin(const std::string& sessionId) {
  return m_latest[sessionId] = ++m_last;
}

bool LoadGenerations::isCurrent(std::string_view sessionId, Generation generation) const {
  const auto latest = m_latest.find(sessionId);
  return latest != m_latest.end() && latest->second == generation;
}

void LoadGenerations::forgetAll() {
  m_latest.clear();
}

}  // namespace varnel::live
