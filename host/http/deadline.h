// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <memory>

namespace varnel::http {

/// Cuts what a socket is doing when time is up; the socket stays open for a last word. Outlived by its socket's owner,
/// which it keeps alive while it runs.
class Deadline {
 public:
  explicit Deadline(boost::asio::ip::tcp::socket& socket) : m_socket(socket), m_timer(socket.get_executor()) {}

  void set(std::chrono::milliseconds time, std::shared_ptr<void> owner);
  void clear();
  /// Time was up since the last `set`.
  [[nodiscard]] bool hasPassed() const { return m_passed; }

 private:
  boost::asio::ip::tcp::socket& m_socket;
  boost::asio::steady_timer m_timer;
  unsigned m_round = 0;
  bool m_passed = false;
};

}  // namespace varnel::http
