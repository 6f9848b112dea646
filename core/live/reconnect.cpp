// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/reconnect.h"

#include <algorithm>
#include <utility>

namespace varnel::live {

std::chrono::seconds ReconnectPolicy::waitAfter(StreamEnd end) {
  if (end != StreamEnd::NotBuilt) m_delay = kFirst;
  return std::exchange(m_delay, std::min(m_delay * 2, kCeiling));
}

}  // namespace varnel::live
