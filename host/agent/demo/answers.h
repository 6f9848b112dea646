// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/wire/request.h"
#include "host/agent/agent.h"

namespace varnel::agent::demo {

/// What an answer to a request comes to.
struct Verdict {
  bool accepted = false;
  bool forSession = false;
  std::string words;  ///< what was answered to a question
};

/// Reads the result the phone sent by the rules of the request's method; Invalid when it does not fit them.
Result<Verdict> judge(const wire::PendingRequest& request, const json::JSONValue& result);

}  // namespace varnel::agent::demo
