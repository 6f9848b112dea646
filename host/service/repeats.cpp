// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/repeats.h"

#include "host/service/log.h"

namespace varnel::service {

Outcome<std::optional<Repeats::Answer>> Repeats::begin(const Request& request) {
  m_answers.forgetBefore(m_clock.wall() - kKeptSeconds);
  if (auto stored = m_answers.find(request.deviceId, request.key, request.content)) {
    if (stored->sameRequest) return Answer{.status = stored->status, .body = std::move(stored->body)};
    return refuse(Failure::Kind::Mismatch, "This key was used for another request.");
  }
  if (!m_inFlight.emplace(request.deviceId, request.key).second) {
    return refuse(Failure::Kind::Conflict, "This request is still being worked on.");
  }
  return std::nullopt;
}

void Repeats::finish(const Request& request, const Answer& answer) {
  m_inFlight.erase({request.deviceId, request.key});
  if (answer.status >= 500) return;
  try {
    m_answers.keep({.deviceId = request.deviceId,
                    .key = request.key,
                    .request = request.content,
                    .status = answer.status,
                    .body = answer.body},
                   m_clock.wall());
  } catch (const std::exception& error) {
    log(std::string("an answer could not be kept for its repetition: ") + error.what());
  }
}

}  // namespace varnel::service
