// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/event_stream.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket/rfc6455.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <charconv>
#include <memory>

#include "host/service/bridge.h"
#include "host/service/log.h"

namespace varnel::http {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace websocket = boost::beast::websocket;
constexpr auto kAwait = asio::as_tuple(asio::use_awaitable);

namespace {

using Socket = websocket::stream<asio::ip::tcp::socket>;

/// Phones never speak on the stream; what they say is dropped, and may not be long.
constexpr std::size_t kLongestMessage = 4096;
constexpr std::chrono::seconds kHandshakeTime{10};
constexpr std::chrono::milliseconds kGoodbyeTime{500};

std::optional<std::int64_t> readSequence(const Target& target) {
  const std::string text = target.value("after").value_or("0");
  std::int64_t after = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), after);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
  return after;
}

void configure(Socket& socket, const Limits& limits) {
  websocket::stream_base::timeout timeout{};
  timeout.handshake_timeout = kHandshakeTime;
  timeout.idle_timeout = limits.silentTime;
  timeout.keep_alive_pings = true;
  socket.set_option(timeout);
  socket.set_option(websocket::stream_base::decorator([](websocket::response_type& response) {
    response.set("Varnel-Contract", "1");
    response.erase(beast::http::field::server);
  }));
  socket.read_message_max(kLongestMessage);
  socket.text(true);
}

/// Reads so that pings, pongs and the other side's goodbye are seen; ends the stream with it.
asio::awaitable<void> listen(std::shared_ptr<Socket> socket, std::shared_ptr<service::Subscription> stream) {
  beast::flat_buffer buffer;
  for (;;) {
    const auto [error, size] = co_await socket->async_read(buffer, kAwait);
    if (error) break;
    buffer.clear();
  }
  stream->close();
}

/// Cuts the socket a moment after the stream has ended, whatever it is doing then: a peer that does not read holds up
/// the last event and the goodbye alike. What it has not taken by then is dropped.
void cutAfterGoodbye(const std::shared_ptr<Socket>& socket) {
  const auto timer = std::make_shared<asio::steady_timer>(socket->get_executor(), kGoodbyeTime);
  timer->async_wait([socket, timer](boost::system::error_code) {
    auto& lowest = beast::get_lowest_layer(*socket);
    boost::system::error_code ignored;
    lowest.set_option(asio::socket_base::linger(true, 0), ignored);
    lowest.close(ignored);
  });
}

asio::awaitable<void> sendEvents(std::shared_ptr<Socket> socket, std::shared_ptr<service::Subscription> stream) {
  while (const auto event = co_await service::Subscription::next(stream)) {
    const auto [error, size] = co_await socket->async_write(asio::buffer(*event), kAwait);
    if (error) break;
  }
  stream->close();
  if (socket->is_open()) co_await socket->async_close(websocket::close_code::going_away, kAwait);
  boost::system::error_code ignored;
  beast::get_lowest_layer(*socket).close(ignored);
}

using Subscribed = service::Outcome<std::shared_ptr<service::Subscription>>;

/// Where the subscription is left; the request may have stopped waiting.
struct Slot {
  explicit Slot(const asio::any_io_executor& executor) : filled(executor) {}
  asio::steady_timer filled;
  std::optional<Subscribed> result;
  bool isAbandoned = false;
};

asio::awaitable<void> fill(std::shared_ptr<Slot> slot, service::Bridge* bridge, std::int64_t after,
                           std::string deviceId) {
  Subscribed result = service::refuse(service::Failure::Kind::Internal, "The bridge failed. Its log says more.");
  try {
    result = co_await bridge->events.subscribe(after, std::move(deviceId));
  } catch (const std::exception& error) {
    service::log(std::string("a stream could not begin: ") + error.what());
  }
  if (slot->isAbandoned && result) (*result)->close();
  slot->result = std::move(result);
  slot->filled.cancel();
}

/// A subscription that may still begin when the agent has answered: meanwhile the device may have been revoked, and
/// other streams of it may have begun.
asio::awaitable<Subscribed> subscribe(service::Bridge* bridge, Limits limits, std::int64_t after,
                                      std::string deviceId) {
  using Kind = service::Failure::Kind;
  const auto executor = co_await asio::this_coro::executor;
  const auto slot = std::make_shared<Slot>(executor);
  slot->filled.expires_after(limits.handlerTime);
  asio::co_spawn(executor, fill(slot, bridge, after, deviceId), [](const std::exception_ptr&) {});
  if (!slot->result) co_await slot->filled.async_wait(kAwait);
  slot->isAbandoned = true;
  if (!slot->result) co_return service::refuse(Kind::TimedOut, "The agent did not answer in time.");
  auto subscribed = std::move(*slot->result);
  if (!subscribed) co_return std::unexpected(subscribed.error());
  const auto stream = *subscribed;
  if (bridge->events.countStreams(deviceId) > limits.streamsPerDevice) {
    stream->close();
    co_return service::refuse(Kind::TooManyRequests, "This device has too many event streams.");
  }
  if (!bridge->isPaired(deviceId)) {
    stream->close();
    co_return service::refuse(Kind::Unauthorized, "This device is not paired with the bridge.");
  }
  co_return stream;
}

}  // namespace

asio::awaitable<std::optional<Answer>> serveEventStream(EventStreamRequest request) {
  if (!websocket::is_upgrade(request.request)) co_return errorAnswer(426, "The event stream is a WebSocket.");
  const auto after = readSequence(request.target);
  if (!after) co_return errorAnswer(400, "The sequence number is not understood.");
  if (request.bridge.events.countStreams(request.deviceId) >= request.limits.streamsPerDevice) {
    co_return errorAnswer(429, "This device has too many event streams.");
  }
  const auto stream = co_await subscribe(&request.bridge, request.limits, *after, request.deviceId);
  if (!stream) co_return answerTo(stream.error());
  const auto socket = std::make_shared<Socket>(std::move(request.socket));
  configure(*socket, request.limits);
  (*stream)->onClose([socket] { cutAfterGoodbye(socket); });
  const auto [error] = co_await socket->async_accept(request.request, kAwait);
  if (error) {
    (*stream)->close();
    co_return std::nullopt;
  }
  asio::co_spawn(co_await asio::this_coro::executor, listen(socket, *stream), [](const std::exception_ptr&) {});
  co_await sendEvents(socket, *stream);
  co_return std::nullopt;
}

}  // namespace varnel::http
