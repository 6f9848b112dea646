// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/server.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>

#include "host/service/log.h"

namespace varnel::http {

namespace asio = boost::asio;
constexpr auto kAwait = asio::as_tuple(asio::use_awaitable);

namespace {

/// After a failed accept (no more descriptors) it does not help to ask again at once.
constexpr std::chrono::milliseconds kAcceptPause{100};

}  // namespace

Server::Server(const asio::any_io_executor& executor, service::Bridge& bridge, AllowedHosts hosts, Limits limits)
    : m_executor(executor),
      m_surroundings{.bridge = bridge, .hosts = std::move(hosts), .limits = limits},
      m_acceptor(executor) {}

std::expected<asio::ip::tcp::endpoint, std::string> Server::listen(const asio::ip::tcp::endpoint& address) {
  boost::system::error_code error;
  m_acceptor.open(address.protocol(), error);
  if (!error) m_acceptor.set_option(asio::socket_base::reuse_address(true), error);
  if (!error) m_acceptor.bind(address, error);
  if (!error) m_acceptor.listen(asio::socket_base::max_listen_connections, error);
  if (error) return std::unexpected(error.message());
  return m_acceptor.local_endpoint();
}

asio::awaitable<void> Server::run() {
  asio::steady_timer pause(m_executor);
  while (m_acceptor.is_open()) {
    auto [error, socket] = co_await m_acceptor.async_accept(kAwait);
    if (!error) {
      open(std::move(socket));
    } else if (m_acceptor.is_open()) {
      service::log("a connection could not be accepted: " + error.message());
      pause.expires_after(kAcceptPause);
      co_await pause.async_wait(kAwait);
    }
  }
}

void Server::open(asio::ip::tcp::socket socket) {
  const auto& limits = m_surroundings.limits;
  if (m_connections.size() >= limits.connections + limits.turnedAway) return;
  const bool isFull = m_connections.size() >= limits.connections;
  const auto connection = std::make_shared<Connection>(std::move(socket), m_surroundings);
  const auto entry = m_connections.insert(m_connections.end(), connection);
  // The list outlives every connection: both end with the io_context.
  asio::co_spawn(m_executor, isFull ? Connection::turnAway(connection) : Connection::serve(connection),
                 [this, entry](const std::exception_ptr&) { m_connections.erase(entry); });
}

void Server::stop() {
  boost::system::error_code ignored;
  m_acceptor.close(ignored);
  for (const auto& connection : m_connections) connection->close();
}

}  // namespace varnel::http
