// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <set>
#include <string>
#include <utility>

#include "host/service/clock.h"
#include "host/service/failure.h"
#include "host/store/answers.h"

namespace varnel::service {

/// Answers a repeated request in place of doing it again, for 24 hours, device by device. A failure of ours (5xx) is
/// forgotten, so that the next attempt is a real one. What was in flight when the bridge died is not known afterwards;
/// the agent gets the key as the message's id for that case.
class Repeats {
 public:
  static constexpr double kKeptSeconds = 24 * 3600;

  Repeats(store::Answers& answers, Clock clock) : m_answers(answers), m_clock(std::move(clock)) {}

  struct Request {
    std::string deviceId;
    std::string key;
    store::Digest content{};  ///< over everything that makes it this request
  };
  struct Answer {
    int status = 0;
    std::string body;
    bool operator==(const Answer&) const = default;
  };
  /// Nothing: go ahead, and `finish` whatever comes of it. An answer: send that. Conflict while the first attempt is
  /// still running; Mismatch when the key came with another request.
  Outcome<std::optional<Answer>> begin(const Request& request);
  /// An answer that cannot be kept is logged: the request has been done all the same.
  void finish(const Request& request, const Answer& answer);

 private:
  store::Answers& m_answers;
  Clock m_clock;
  std::set<std::pair<std::string, std::string>> m_inFlight;
};

}  // namespace varnel::service
