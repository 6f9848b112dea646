// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <chrono>
#include <cstdint>
#include <memory>
#include <stop_token>

#include "app/client/body.h"
#include "app/client/client_error.h"
#include "core/live/request.h"

namespace varnel::client {

/// The kept-alive connections of one client. Shared by its calls, so that it outlives the client while they wind up.
class Network {
 public:
  Network();

  QNetworkAccessManager manager;
};

/// A whole HTTP answer of any status.
struct Answer {
  int status = 0;
  Body body;
};

struct ExchangeLimits {
  std::chrono::milliseconds timeout;
  std::int64_t answerLimit;
};

TransportError timedOut();
TransportError tooLarge(const ExchangeLimits& limits);

/// Sends one request and waits for the whole answer. `body` travels as it is. Fails with a `TransportError`, with
/// InvalidResponse when the other side does not speak HTTP, or with `Cancelled`; a status is never a failure here. An
/// address that is not http or https is refused unsent.
Task<Result<Answer>> exchange(std::shared_ptr<Network> network, live::HttpRequest request, QByteArray body,
                              ExchangeLimits limits, std::stop_token stop);

}  // namespace varnel::client
