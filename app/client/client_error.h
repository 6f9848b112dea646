// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoro/QCoroTask>
#include <expected>
#include <string>
#include <variant>

#include "core/json/decode_error.h"
#include "core/live/request.h"

namespace varnel::client {

/// What the bridge, or the lack of one, answers.
struct APIError {
  enum class Kind {
    Server,           ///< a status that is not a success; `status` and `message` are set
    NotPaired,        ///< no credentials, nothing was sent
    InvalidResponse,  ///< what came back is not HTTP
  };
  Kind kind = Kind::InvalidResponse;
  int status = 0;
  std::string message;  ///< the bridge's own text, or a fixed one when it gave none

  bool operator==(const APIError&) const = default;
};

/// The connection failed before a whole answer stood here.
struct TransportError {
  enum class Kind {
    Failed,    ///< no route, refused, closed, TLS not trusted: whatever the network stack says
    TimedOut,  ///< no byte moved for as long as a request may be silent
    TooLarge,  ///< the answer was cut because it is larger than an answer may be
  };
  Kind kind = Kind::Failed;
  std::string text;  ///< for people; holds neither the token nor an address that carries it

  bool operator==(const TransportError&) const = default;
};

/// The caller's stop token was stopped, or the client went away. Never shown.
struct Cancelled {
  bool operator==(const Cancelled&) const = default;
};

/// Everything that a call can fail with. `DecodeError`: a success whose body is not the record that was asked for.
/// `RequestError`: a request that could not be built and was not sent (never of kind NotPaired, which is an
/// `APIError`).
class ClientError : public std::variant<APIError, TransportError, json::DecodeError, live::RequestError, Cancelled> {
 public:
  using variant::variant;
};

template <class T>
using Result = std::expected<T, ClientError>;

/// A coroutine that runs at once, on the main thread, up to its first wait. Dropping the task does not stop it; its
/// stop token does.
template <class T>
using Task = QCoro::Task<T>;

/// The text for people. Empty only for `Cancelled`.
std::string userText(const ClientError& error);

inline bool isCancelled(const ClientError& error) {
  return std::holds_alternative<Cancelled>(error);
}

}  // namespace varnel::client
