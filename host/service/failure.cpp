// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/failure.h"

#include "host/agent/agent.h"

namespace varnel::service {

std::unexpected<Failure> refusedBy(const agent::AgentError& error) {
  switch (error.kind) {
    case agent::AgentError::Kind::NotFound:
      return refuse(Failure::Kind::NotFound, error.text);
    case agent::AgentError::Kind::Conflict:
      return refuse(Failure::Kind::Conflict, error.text);
    case agent::AgentError::Kind::Invalid:
      return refuse(Failure::Kind::Invalid, error.text);
    case agent::AgentError::Kind::Unavailable:
      break;
  }
  return refuse(Failure::Kind::Unavailable, error.text);
}

}  // namespace varnel::service
