// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSslSocket>
#include <QTimer>
#include <memory>
#include <optional>

#include "app/client/async.h"
#include "app/client/http_exchange.h"
#include "core/live/request.h"

namespace varnel::client {

/// Sends one request on a connection of its own, at most once whatever becomes of it, and collects the answer.
///
/// QNetworkAccessManager sends a POST again, up to four times, when the server closes without answering, on a fresh
/// connection with "Connection: close" too; so what changes something goes this way. Lives in the frame of one
/// coroutine, on the main thread; every way to end opens the gate.
class OneShot {
 public:
  OneShot(const live::HttpRequest& request, QByteArray body, const ExchangeLimits& limits);
  ~OneShot();
  OneShot(const OneShot&) = delete;
  OneShot& operator=(const OneShot&) = delete;

  Gate& ended() { return m_ended; }
  void cancel() { fail(Cancelled{}); }
  /// Once, after the gate has opened.
  Result<Answer> take();

 private:
  class Parser;

  void begin();
  void writeSome();
  void readAll();
  void readEnd();
  void fail(ClientError error);
  void failBySocket();

  QByteArray m_head;
  QByteArray m_body;
  qsizetype m_written = 0;  ///< bytes of the body
  ExchangeLimits m_limits;
  QSslSocket m_socket;
  QTimer m_silence;
  std::unique_ptr<Parser> m_parser;
  std::optional<ClientError> m_failure;
  bool m_done = false;
  Gate m_ended;
};

}  // namespace varnel::client
