// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/answer.h"

#include "core/wire/bodies.h"
#include "core/wire/codec.h"

namespace varnel::http {

namespace {

int statusOf(service::Failure::Kind kind) {
  using Kind = service::Failure::Kind;
  switch (kind) {
    case Kind::Invalid:
      return 400;
    case Kind::Unauthorized:
      return 401;
    case Kind::Forbidden:
      return 403;
    case Kind::NotFound:
      return 404;
    case Kind::Late:
      return 408;
    case Kind::Conflict:
      return 409;
    case Kind::TooLarge:
      return 413;
    case Kind::Mismatch:
      return 422;
    case Kind::TooManyRequests:
      return 429;
    case Kind::Unavailable:
      return 503;
    case Kind::TimedOut:
      return 504;
    case Kind::Internal:
      break;
  }
  return 500;
}

}  // namespace

Answer errorAnswer(int status, std::string text) {
  auto body = wire::encode(wire::ServerError{.error = std::move(text)});
  // A text that is not UTF-8 can only have come from outside, and is not worth repeating.
  return {.status = status, .body = body ? std::move(*body) : std::string(R"({"error":"Bridge error"})")};
}

Answer answerTo(const service::Failure& failure) {
  return errorAnswer(statusOf(failure.kind), failure.text);
}

Answer lastAnswerTo(const service::Failure& failure) {
  Answer answer = answerTo(failure);
  answer.closes = true;
  return answer;
}

}  // namespace varnel::http
