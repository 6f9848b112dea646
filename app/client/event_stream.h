// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <stop_token>
#include <string>

#include "app/client/client_error.h"

namespace varnel::client {

/// One connection to the bridge's event stream, used once: open it, wait for the upgrade, take messages until one
/// fails. Main thread only. Destroying it closes the connection at once and ends its waits with `Cancelled`.
class EventStream {
 public:
  /// Bytes of one event; text and binary messages are the same thing.
  struct Message {
    std::string bytes;
  };

  struct Options {
    /// How long the connection and its upgrade may take.
    std::chrono::milliseconds timeout = std::chrono::seconds(live::kRequestTimeoutSeconds);
    /// Bytes of messages that may wait to be taken, and of one message; beyond it the connection fails.
    std::int64_t queueLimit = std::int64_t{64} << 20;
    /// After how long a silence the bridge is asked whether it is still there, and how long it may take to say so. A
    /// dead path shows after both.
    std::chrono::milliseconds pingAfter = std::chrono::seconds(15);
    std::chrono::milliseconds pongWithin = std::chrono::seconds(20);
  };

  /// `address` carries the token; it is never part of a failure's text.
  EventStream(std::string address, Options options);
  ~EventStream();
  EventStream(const EventStream&) = delete;
  EventStream& operator=(const EventStream&) = delete;

  /// Starts to connect; returns at once. Called once.
  void open();

  /// Waits until the bridge has accepted the stream. A refusal is an `APIError` of kind Server with its status, a
  /// bridge that cannot be reached a `TransportError`. A stopped token closes the connection.
  Task<Result<void>> opened(std::stop_token stop = {});

  /// The next message, those that came with the upgrade included, in order. After the last one, why the connection
  /// ended. One caller at a time. A stopped token closes the connection.
  Task<Result<Message>> next(std::stop_token stop = {});

  /// Whether the upgrade has succeeded and the connection has not ended.
  [[nodiscard]] bool isConnected() const;

  /// Closes the connection at once; waits end with `Cancelled`.
  void close();

 private:
  struct State;
  std::shared_ptr<State> m_state;
};

}  // namespace varnel::client
