// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace varnel::live {

/// Why there is no event stream.
enum class StreamEnd {
  NotBuilt,  ///< it could not even be asked for
  Broken,    ///< the handshake failed, the connection broke or was closed, or a message was not an event
};

/// How long to wait before the event stream is opened again: 1, 2, 4, ... 30 seconds while it cannot be asked for, one
/// second after a connection or an attempt at one. Never gives up.
class ReconnectPolicy {
 public:
  /// The wait that this end calls for; to be asked once for each.
  std::chrono::seconds waitAfter(StreamEnd end);

 private:
  static constexpr std::chrono::seconds kFirst{1};
  static constexpr std::chrono::seconds kCeiling{30};

  std::chrono::seconds m_delay = kFirst;
};

}  // namespace varnel::live
