// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace varnel::service {

/// What time it is; tests bring their own.
struct Clock {
  std::function<double()> wall;                        ///< seconds since 1970, UTC
  std::function<std::chrono::milliseconds()> elapsed;  ///< never jumps, and goes on while the machine sleeps

  static Clock system();
};

}  // namespace varnel::service
