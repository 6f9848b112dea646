// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/awaitable.hpp>
#include <expected>
#include <string>

namespace varnel::agent {
struct AgentError;
}

namespace varnel::service {

/// Why the bridge did not do what a phone asked for. The text is what the phone shows.
struct Failure {
  enum class Kind {
    Invalid,          ///< the request makes no sense, now or later
    Unauthorized,     ///< no token, or one that is not known (any more)
    Forbidden,        ///< known, but not allowed
    NotFound,         ///< no such conversation, request or file
    Late,             ///< the request itself did not arrive in time
    Conflict,         ///< not in this state: answered already, in flight, archived
    TooLarge,         ///< over a size limit
    Mismatch,         ///< the key was used for another request
    TooManyRequests,  ///< wait and try again
    Unavailable,      ///< the agent cannot be reached now
    TimedOut,         ///< the agent did not answer in time
    Internal,         ///< ours; the log says more
  };
  Kind kind = Kind::Internal;
  std::string text;

  bool operator==(const Failure&) const = default;
};

template <class T>
using Outcome = std::expected<T, Failure>;
template <class T>
using Task = boost::asio::awaitable<Outcome<T>>;

inline std::unexpected<Failure> refuse(Failure::Kind kind, std::string text) {
  return std::unexpected(Failure{.kind = kind, .text = std::move(text)});
}

std::unexpected<Failure> refusedBy(const agent::AgentError& error);

}  // namespace varnel::service
