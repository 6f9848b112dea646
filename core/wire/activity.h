// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "core/wire/session.h"

namespace varnel::wire {

/// What a live activity is about; fixed for its whole life.
struct CodexTurnAttributes {
  std::string sessionId;
  std::string turnId;
  std::string project;  ///< as people call it

  /// What it shows at the moment.
  struct ContentState {
    CodexTurnState state = CodexTurnState::Working;
    std::string message;
    double updatedAt = 0;  ///< seconds since 1970, UTC
    std::int64_t sequence = 0;
  };
};
bool operator==(const CodexTurnAttributes&, const CodexTurnAttributes&);
bool operator==(const CodexTurnAttributes::ContentState&, const CodexTurnAttributes::ContentState&);

}  // namespace varnel::wire
