// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace varnel::http {

/// How much of everything one phone may have. Tests tighten the times.
struct Limits {
  std::uint32_t headerBytes = 16 * 1024;
  std::uint64_t jsonBytes = 1024UL * 1024;
  std::uint64_t claimBytes = 4096;  ///< of who holds no token
  std::size_t connections = 256;
  std::size_t turnedAway = 64;  ///< beyond these many more are told why; those after them are closed at once
  std::size_t streamsPerDevice = 8;
  std::chrono::milliseconds headerTime{
      10'000};  ///< for a connection's first byte, and for a whole header from its first on
  std::chrono::milliseconds bodyTime{30'000};     ///< for a JSON body, and for each piece of a file
  std::chrono::milliseconds idleTime{75'000};     ///< between two requests of a connection
  std::chrono::milliseconds handlerTime{25'000};  ///< shorter than the phone's own patience
  std::chrono::milliseconds silentTime{30'000};   ///< a stream is pinged at half of it and closed at its end
};

}  // namespace varnel::http
