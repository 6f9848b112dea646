// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/connection.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <deque>
#include <map>

#include "core/json/text.h"
#include "host/agent/codex/json_access.h"
#include "host/agent/codex/server.h"

namespace varnel::agent::codex {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace websocket = boost::beast::websocket;
using Object = JSONValue::Object;
constexpr auto kAwait = asio::as_tuple(asio::use_awaitable);

namespace {

/// The longest transcript that is read at once; beyond it the connection ends.
constexpr std::size_t kLongestMessage = std::size_t{1} << 30;
constexpr std::chrono::seconds kHandshakeTime{10};

/// A call that waits for its answer.
struct Waiting {
  explicit Waiting(const asio::any_io_executor& executor) : done(executor) {}
  asio::steady_timer done;
  std::optional<Rpc<JSONValue>> answer;
};

class SocketConnection final : public Connection {
 public:
  using Socket = websocket::stream<asio::local::stream_protocol::socket>;

  SocketConnection(asio::any_io_executor executor, Socket socket, std::string serverId)
      : m_executor(std::move(executor)), m_socket(std::move(socket)), m_serverId(std::move(serverId)) {}

  void listen(Listener listener) override {
    m_listener = std::move(listener);
    asio::co_spawn(m_executor, read(self()), asio::detached);
  }

  asio::awaitable<Rpc<JSONValue>> call(std::string method, JSONValue params,
                                       std::chrono::milliseconds patience) override {
    const auto keep = self();
    if (!m_open) co_return std::unexpected(RpcError{RpcError::Kind::Lost, "The agent is not connected."});
    const std::int64_t id = ++m_lastId;
    const auto waiting = std::make_shared<Waiting>(m_executor);
    waiting->done.expires_after(patience);
    m_waiting.emplace(id, waiting);
    send(Object{{"id", id}, {"method", method}, {"params", std::move(params)}});
    if (!waiting->answer) co_await waiting->done.async_wait(kAwait);
    m_waiting.erase(id);
    if (waiting->answer) co_return std::move(*waiting->answer);
    co_return std::unexpected(RpcError{RpcError::Kind::TimedOut, "The agent does not answer (" + method + ")."});
  }

  void notify(std::string method) override { send(Object{{"method", std::move(method)}}); }
  void answer(const JSONValue& id, JSONValue result) override {
    send(Object{{"id", id}, {"result", std::move(result)}});
  }
  void refuse(const JSONValue& id, std::string reason) override {
    send(Object{{"id", id}, {"error", Object{{"code", -32601}, {"message", std::move(reason)}}}});
  }

  void close() override {
    m_listener = {};
    end();
  }
  [[nodiscard]] bool isOpen() const override { return m_open; }
  [[nodiscard]] const std::string& serverId() const override { return m_serverId; }

 private:
  std::shared_ptr<SocketConnection> self() { return std::static_pointer_cast<SocketConnection>(shared_from_this()); }

  void end() {
    if (!std::exchange(m_open, false)) return;
    boost::system::error_code ignored;
    beast::get_lowest_layer(m_socket).close(ignored);
    for (const auto& [id, waiting] : std::exchange(m_waiting, {})) {
      waiting->answer = std::unexpected(RpcError{RpcError::Kind::Lost, "The connection to the agent was lost."});
      waiting->done.cancel();
    }
    const auto closed = std::exchange(m_listener, {}).closed;
    if (closed) closed();
  }

  void send(const Object& message) {
    auto text = json::write(message);
    if (!text || !m_open) return;
    m_outgoing.push_back(std::move(*text));
    if (m_outgoing.size() == 1) asio::co_spawn(m_executor, write(self()), asio::detached);
  }

  static asio::awaitable<void> write(std::shared_ptr<SocketConnection> self) {
    while (self->m_open && !self->m_outgoing.empty()) {
      const auto [error, size] = co_await self->m_socket.async_write(asio::buffer(self->m_outgoing.front()), kAwait);
      if (error) self->end();
      self->m_outgoing.pop_front();
    }
  }

  static asio::awaitable<void> read(std::shared_ptr<SocketConnection> self) {
    beast::flat_buffer buffer;
    while (self->m_open) {
      const auto [error, size] = co_await self->m_socket.async_read(buffer, kAwait);
      if (error) break;
      const std::string_view text(static_cast<const char*>(buffer.data().data()), buffer.size());
      self->take(text);
      buffer.consume(buffer.size());
      // One long answer does not hold its memory for ever.
      if (buffer.capacity() > std::size_t{1} << 20) buffer.shrink_to_fit();
    }
    self->end();
  }

  void take(std::string_view text) {
    const auto message = json::parse(text);
    if (!message) {
      if (m_listener.log) m_listener.log("the agent sent what is no JSON: " + message.error().message());
      return;
    }
    const auto& id = memberOf(*message, "id");
    const auto method = optionalTextOf(*message, "method");
    if (!method) {
      settle(id, *message);
    } else if (id.isNull()) {
      if (m_listener.notified) m_listener.notified(*method, memberOf(*message, "params"));
    } else {
      if (m_listener.asked) m_listener.asked(id, *method, memberOf(*message, "params"));
    }
  }

  void settle(const JSONValue& id, const JSONValue& message) {
    const auto number = id.number() == nullptr ? 0 : static_cast<std::int64_t>(*id.number());
    const auto found = m_waiting.find(number);
    if (found == m_waiting.end()) return;
    auto& waiting = *found->second;
    if (const auto* error = message.member("error")) {
      waiting.answer = std::unexpected(RpcError{RpcError::Kind::Refused, textOf(*error, "message")});
    } else {
      waiting.answer = memberOf(message, "result");
    }
    waiting.done.cancel();
  }

  asio::any_io_executor m_executor;
  Socket m_socket;
  std::string m_serverId;
  Listener m_listener;
  std::deque<std::string> m_outgoing;
  std::map<std::int64_t, std::shared_ptr<Waiting>> m_waiting;
  std::int64_t m_lastId = 0;
  bool m_open = true;
};

}  // namespace

asio::awaitable<std::expected<std::shared_ptr<Connection>, std::string>> Connection::open(
    asio::any_io_executor executor, std::filesystem::path socket) {
  asio::local::stream_protocol::socket plain(executor);
  const auto [failed] = co_await plain.async_connect(asio::local::stream_protocol::endpoint(socket.string()), kAwait);
  if (failed) co_return std::unexpected(failed.message());
  auto serverId = serverIdOf(plain.native_handle());
  SocketConnection::Socket stream(std::move(plain));
  websocket::stream_base::timeout timeout{};
  timeout.handshake_timeout = kHandshakeTime;
  timeout.idle_timeout = websocket::stream_base::none();
  stream.set_option(timeout);
  stream.read_message_max(kLongestMessage);
  stream.text(true);
  const auto [refused] = co_await stream.async_handshake("localhost", "/", kAwait);
  if (refused) co_return std::unexpected(refused.message());
  co_return std::make_shared<SocketConnection>(std::move(executor), std::move(stream), std::move(serverId));
}

}  // namespace varnel::agent::codex
