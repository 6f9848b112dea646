// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <expected>
#include <filesystem>
#include <list>
#include <memory>
#include <string>

#include "host/service/bridge.h"
#include "host/store/devices.h"

namespace varnel::cli {

/// What the other commands ask of a running bridge, over a Unix socket in its state directory that only its user can
/// open. One JSON object a line: `{"command": "pair"}` is answered by `{"payload", "expiresAt"}` and, when it ends, by
/// `{"claimedBy"}`, `{"expired": true}` or `{"replaced": true}`; the code is withdrawn when the asker goes. The device
/// commands are those of `answerDeviceCommand`. Runs on the bridge's thread and outlives its last handler.
class ControlServer {
 public:
  ControlServer(const boost::asio::any_io_executor& executor, service::Bridge& bridge, store::Devices& devices,
                std::string baseURL);

  /// Takes the place of a socket that a bridge left behind; the caller holds the state directory.
  std::expected<void, std::string> listen(const std::filesystem::path& path);
  boost::asio::awaitable<void> run();
  void stop();

 private:
  using Socket = boost::asio::local::stream_protocol::socket;
  boost::asio::awaitable<void> serve(std::shared_ptr<Socket> socket);
  boost::asio::awaitable<void> pair(std::shared_ptr<Socket> socket);

  boost::asio::any_io_executor m_executor;
  service::Bridge& m_bridge;
  store::Devices& m_devices;
  std::string m_baseURL;
  std::filesystem::path m_path;
  boost::asio::local::stream_protocol::acceptor m_acceptor;
  std::list<std::weak_ptr<Socket>> m_sockets;
};

}  // namespace varnel::cli
