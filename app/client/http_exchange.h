// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <chrono>
#include <cstdint>
#include <stop_token>

#include "app/client/answer_parser.h"
#include "app/client/client_error.h"
#include "core/live/request.h"

namespace varnel::client {

struct ExchangeLimits {
  std::chrono::milliseconds timeout;  ///< without a byte in either direction
  std::int64_t answerLimit;           ///< bytes
};

/// Sends one request on a connection of its own, at most once whatever becomes of it, and waits for the whole answer.
/// `file` is the body of a request that has none itself. Fails with a `TransportError`, with InvalidResponse when the
/// other side does not speak HTTP, or with `Cancelled`; a status is never a failure here. An address that is not http
/// or https is refused unsent.
Task<Result<Answer>> exchange(live::HttpRequest request, QByteArray file, ExchangeLimits limits, std::stop_token stop);

}  // namespace varnel::client
