// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <expected>
#include <list>
#include <memory>
#include <string>

#include "host/http/connection.h"
#include "host/http/limits.h"

namespace varnel::http {

/// Listens for phones on one address, for HTTP and the event stream alike. Everything runs on the one thread of the
/// io_context, the bridge's too: nothing here is locked. Outlives the io_context's last handler.
class Server {
 public:
  Server(const boost::asio::any_io_executor& executor, service::Bridge& bridge, AllowedHosts hosts, Limits limits = {});

  /// Binds the address, port 0 being any free one. Where it listens then, or why it cannot.
  std::expected<boost::asio::ip::tcp::endpoint, std::string> listen(const boost::asio::ip::tcp::endpoint& address);
  /// Accepts until `stop`.
  boost::asio::awaitable<void> run();
  /// Accepts no more and ends what is open.
  void stop();

 private:
  void open(boost::asio::ip::tcp::socket socket);

  boost::asio::any_io_executor m_executor;
  Surroundings m_surroundings;
  boost::asio::ip::tcp::acceptor m_acceptor;
  std::list<std::shared_ptr<Connection>> m_connections;
};

}  // namespace varnel::http
