// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/clock.h"

#include <time.h>

namespace varnel::service {

Clock Clock::system() {
  return {.wall =
              [] {
                const auto since = std::chrono::system_clock::now().time_since_epoch();
                return std::chrono::duration<double>(since).count();
              },
          .elapsed =
              [] {
                timespec now{};
                ::clock_gettime(CLOCK_BOOTTIME, &now);
                return std::chrono::milliseconds(now.tv_sec * 1000 + now.tv_nsec / 1'000'000);
              }};
}

}  // namespace varnel::service
