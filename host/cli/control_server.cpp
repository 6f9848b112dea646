// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/cli/control_server.h"

#include <sys/stat.h>
#include <unistd.h>

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "core/wire/pairing.h"
#include "host/cli/device_commands.h"
#include "host/service/log.h"

namespace varnel::cli {

namespace asio = boost::asio;
using json::JSONValue;
constexpr auto kAwait = asio::as_tuple(asio::use_awaitable);

namespace {

constexpr std::size_t kLongestLine = 16UL * 1024;
/// After a failed accept (no more descriptors) it does not help to ask again at once.
constexpr std::chrono::milliseconds kAcceptPause{100};

/// How an offer ended, as far as is known.
struct Ending {
  explicit Ending(const asio::any_io_executor& executor) : changed(executor) {}
  asio::steady_timer changed;
  std::optional<JSONValue> answer;
  bool isOver = false;

  void end(std::optional<JSONValue> last) {
    answer = std::move(last);
    isOver = true;
    changed.cancel();
  }
};

template <class Socket>
asio::awaitable<bool> writeLine(std::shared_ptr<Socket> socket, JSONValue value) {
  const auto line = json::write(value).value_or("{}") + "\n";
  const auto [error, size] = co_await asio::async_write(*socket, asio::buffer(line), kAwait);
  co_return !error;
}

/// Ends the offer when the asker goes.
template <class Socket>
asio::awaitable<void> watch(std::shared_ptr<Socket> socket, std::shared_ptr<Ending> ending) {
  std::array<char, 256> ignored{};
  for (;;) {
    const auto [error, size] = co_await socket->async_read_some(asio::buffer(ignored), kAwait);
    if (error) break;
  }
  if (!ending->isOver) ending->end(std::nullopt);
}

}  // namespace

ControlServer::ControlServer(const asio::any_io_executor& executor, service::Bridge& bridge, store::Devices& devices,
                             std::string baseURL)
    : m_executor(executor), m_bridge(bridge), m_devices(devices), m_baseURL(std::move(baseURL)), m_acceptor(executor) {}

std::expected<void, std::string> ControlServer::listen(const std::filesystem::path& path) {
  // What longer paths would be cut to is somebody else's name.
  if (path.native().size() >= sizeof(sockaddr_un::sun_path)) {
    return std::unexpected("the path of the state directory is too long for a socket in it");
  }
  ::unlink(path.c_str());
  boost::system::error_code error;
  m_acceptor.open(asio::local::stream_protocol(), error);
  const auto before = ::umask(0177);
  if (!error) m_acceptor.bind(asio::local::stream_protocol::endpoint(path.string()), error);
  ::umask(before);
  if (!error) m_acceptor.listen(asio::socket_base::max_listen_connections, error);
  if (error) return std::unexpected(path.string() + ": " + error.message());
  m_path = path;
  return {};
}

asio::awaitable<void> ControlServer::run() {
  asio::steady_timer pause(m_executor);
  while (m_acceptor.is_open()) {
    auto [error, accepted] = co_await m_acceptor.async_accept(kAwait);
    if (error && m_acceptor.is_open()) {
      service::log("a control connection could not be accepted: " + error.message());
      pause.expires_after(kAcceptPause);
      co_await pause.async_wait(kAwait);
    }
    if (error) continue;
    const auto socket = std::make_shared<Socket>(std::move(accepted));
    std::erase_if(m_sockets, [](const auto& old) { return old.expired(); });
    m_sockets.push_back(socket);
    asio::co_spawn(m_executor, serve(socket), [](const std::exception_ptr& failure) {
      if (failure) service::log("a control connection failed");
    });
  }
}

void ControlServer::stop() {
  boost::system::error_code ignored;
  m_acceptor.close(ignored);
  for (const auto& weak : m_sockets) {
    if (const auto socket = weak.lock()) socket->close(ignored);
  }
  if (!m_path.empty()) ::unlink(m_path.c_str());
}

asio::awaitable<void> ControlServer::serve(std::shared_ptr<Socket> socket) {
  std::string buffer;
  for (;;) {
    const auto [error, size] =
        co_await asio::async_read_until(*socket, asio::dynamic_buffer(buffer, kLongestLine), '\n', kAwait);
    if (error) co_return;
    const auto request = json::parse(std::string_view(buffer).substr(0, size - 1));
    buffer.erase(0, size);
    const auto* command = request ? request->member("command") : nullptr;
    if (command != nullptr && *command == JSONValue("pair")) {
      co_await pair(socket);
      co_return;
    }
    auto answer = request ? answerDeviceCommand(*request, m_devices,
                                                [this](const std::string& id) { return m_bridge.revoke(id); })
                          : std::nullopt;
    if (!answer) answer = JSONValue::Object{{"error", "This command is not understood."}};
    if (!co_await writeLine(socket, std::move(*answer))) co_return;
  }
}

asio::awaitable<void> ControlServer::pair(std::shared_ptr<Socket> socket) {
  const auto ending = std::make_shared<Ending>(m_executor);
  const auto offer = m_bridge.pairing.offer([ending](const std::optional<std::string>& claimedBy) {
    ending->end(claimedBy ? JSONValue::Object{{"claimedBy", *claimedBy}} : JSONValue::Object{{"replaced", true}});
  });
  const wire::PairPayload payload{
      .version = 1, .baseURL = base::Url::parse(m_baseURL).value_or(base::Url()), .secret = offer.secret};
  ending->changed.expires_after(service::Pairing::kLifetime);
  asio::co_spawn(m_executor, watch(socket, ending), [](const std::exception_ptr&) {});
  co_await writeLine(
      socket, JSONValue::Object{{"payload", wire::encode(payload).value_or("")}, {"expiresAt", offer.expiresAt}});
  if (!ending->isOver) co_await ending->changed.async_wait(kAwait);
  if (!ending->isOver) ending->end(JSONValue::Object{{"expired", true}});
  m_bridge.pairing.withdraw(offer);
  if (ending->answer) co_await writeLine(socket, *ending->answer);
  boost::system::error_code ignored;
  socket->shutdown(Socket::shutdown_both, ignored);
}

}  // namespace varnel::cli
