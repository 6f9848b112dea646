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

/// A reply that is aborted and deleted from the event loop when its owner lets go of it.
using Reply = std::unique_ptr<QNetworkReply, void (*)(QNetworkReply*)>;

/// The connections of one client. Shared by its calls, so that it outlives the client while they wind up.
class Network {
 public:
  Network();

  /// Sends without waiting. `body` is empty for a GET.
  Reply send(const live::HttpRequest& request, const QByteArray& body);

 private:
  QNetworkAccessManager m_reading;
  /// A kept-alive connection that the server drops makes QNetworkAccessManager send again what it had sent on it, a
  /// POST too. Requests that change something have a manager of their own whose connections carry one request each.
  QNetworkAccessManager m_changing;
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

/// Sends one request and waits for the whole answer. `body` travels as it is. Fails with a `TransportError`, with
/// InvalidResponse when the other side does not speak HTTP, or with `Cancelled`; a status is never a failure here.
Task<Result<Answer>> exchange(std::shared_ptr<Network> network, live::HttpRequest request, QByteArray body,
                              ExchangeLimits limits, std::stop_token stop);

}  // namespace varnel::client
