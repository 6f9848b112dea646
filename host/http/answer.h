// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "host/service/failure.h"

namespace varnel::http {

/// What goes back to a phone, before it is dressed as HTTP. The body is JSON.
struct Answer {
  int status = 200;
  std::string body = "{}";
  std::string allow;    ///< for 405: the methods that the path knows
  bool closes = false;  ///< nothing more is read from this connection
  bool operator==(const Answer&) const = default;
};

/// The one place where a failure becomes a status and a body.
Answer answerTo(const service::Failure& failure);
/// The same, when the request has not been read to its end.
Answer lastAnswerTo(const service::Failure& failure);
/// `{"error": text}`
Answer errorAnswer(int status, std::string text);

}  // namespace varnel::http
