// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>
#include <chrono>
#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "core/json/value.h"

namespace varnel::agent::codex {

/// Why a call brought nothing.
struct RpcError {
  enum class Kind {
    Refused,   ///< the agent said no, in `text`
    Lost,      ///< the connection ended; nobody knows whether it was done
    TimedOut,  ///< no answer in time; nobody knows whether it was done
  };
  Kind kind = Kind::Lost;
  std::string text;
};
template <class T>
using Rpc = std::expected<T, RpcError>;

/// One connection to the agent's server: JSON-RPC, a message a WebSocket text frame, over its Unix socket. Used on one
/// thread; alive as long as somebody holds it or it reads.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  static constexpr std::chrono::seconds kPatience{20};

  /// Fails with words when nobody listens, or not in this way.
  static boost::asio::awaitable<std::expected<std::shared_ptr<Connection>, std::string>> open(
      boost::asio::any_io_executor executor, std::filesystem::path socket);

  virtual ~Connection() = default;

  struct Listener {
    std::function<void(const std::string& method, const json::JSONValue& params)> notified;
    std::function<void(const json::JSONValue& id, const std::string& method, const json::JSONValue& params)> asked;
    std::function<void()> closed;  ///< called once, unless `close` was called before
    std::function<void(const std::string& line)> log;
  };
  /// Begins to read; everything that comes goes to the listener, in order.
  virtual void listen(Listener listener) = 0;
  virtual boost::asio::awaitable<Rpc<json::JSONValue>> call(std::string method, json::JSONValue params,
                                                            std::chrono::milliseconds patience) = 0;
  boost::asio::awaitable<Rpc<json::JSONValue>> call(std::string method, json::JSONValue params) {
    return call(std::move(method), std::move(params), kPatience);
  }
  virtual void notify(std::string method) = 0;
  virtual void answer(const json::JSONValue& id, json::JSONValue result) = 0;
  virtual void refuse(const json::JSONValue& id, std::string reason) = 0;
  /// Ends it; calls that wait fail.
  virtual void close() = 0;
  [[nodiscard]] virtual bool isOpen() const = 0;
  /// The same for all connections to one process, another for every other process.
  [[nodiscard]] virtual const std::string& serverId() const = 0;
};

}  // namespace varnel::agent::codex
