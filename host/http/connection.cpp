// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/connection.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>

#include "host/http/event_stream.h"
#include "host/http/gzip.h"
#include "host/http/run_handler.h"
#include "host/service/bridge.h"
#include "host/service/log.h"

namespace varnel::http {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
constexpr auto kAwait = asio::as_tuple(asio::use_awaitable);

namespace {

constexpr std::chrono::milliseconds kDrainTime{1000};
/// No phone on any network is slower than that and still worth an open answer.
constexpr std::size_t kSlowestBytesPerSecond = 10'000;

}  // namespace

Connection::Connection(asio::ip::tcp::socket socket, Surroundings& surroundings)
    : m_socket(std::move(socket)), m_surroundings(surroundings), m_deadline(m_socket) {
  boost::system::error_code ignored;
  m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
}

void Connection::close() {
  m_deadline.clear();
  boost::system::error_code ignored;
  m_socket.close(ignored);
}

asio::awaitable<void> Connection::serve(std::shared_ptr<Connection> self) {
  try {
    while (self->m_socket.is_open() && co_await self->serveOne()) {
    }
  } catch (const std::exception& error) {
    service::log(std::string("a connection ended: ") + error.what());
  }
  self->m_deadline.clear();
}

asio::awaitable<void> Connection::turnAway(std::shared_ptr<Connection> self) {
  co_await self->send({}, errorAnswer(503, "Too many connections."));
  self->close();
}

/// False when the connection is over.
asio::awaitable<bool> Connection::serveOne() {
  m_header.emplace();
  m_header->header_limit(m_surroundings.limits.headerBytes);
  m_header->body_limit(boost::none);
  if (!co_await readFirstPiece()) co_return false;
  if (auto refused = co_await readHeader()) co_return co_await send({}, std::move(*refused));
  if (!m_header->is_header_done()) co_return false;
  const Wishes wishes{.keepAlive = m_header->get().keep_alive(),
                      .gzip = acceptsGzip(m_header->get()[http::field::accept_encoding])};
  auto admitted = admit();
  if (auto* refused = std::get_if<Answer>(&admitted)) {
    refused->closes = !m_header->is_done();
    co_return co_await send(wishes, std::move(*refused));
  }
  auto& request = std::get<Admitted>(admitted);
  if (request.match.route->kind != Route::Kind::EventStream) {
    co_return co_await send(wishes, co_await handle(std::move(request)));
  }
  auto refused = co_await serveEventStream(EventStreamRequest{.socket = m_socket,
                                                              .bridge = m_surroundings.bridge,
                                                              .limits = m_surroundings.limits,
                                                              .deviceId = request.device->id,
                                                              .target = request.target,
                                                              .request = m_header->get()});
  if (!refused) co_return false;
  refused->closes = !m_header->is_done();
  co_return co_await send(wishes, std::move(*refused));
}

/// Waits for the peer to say something; false when it does not.
asio::awaitable<bool> Connection::readFirstPiece() {
  constexpr std::size_t kFirstPiece = 4096;
  if (m_buffer.size() > 0) co_return true;
  const auto& limits = m_surroundings.limits;
  m_deadline.set(std::exchange(m_hasServed, true) ? limits.idleTime : limits.headerTime, shared_from_this());
  const auto [error, size] = co_await m_socket.async_read_some(m_buffer.prepare(kFirstPiece), kAwait);
  m_deadline.clear();
  if (!error) m_buffer.commit(size);
  co_return !error;
}

/// The answer to a header that is none; nothing when it is one, or when the peer has gone.
asio::awaitable<std::optional<Answer>> Connection::readHeader() {
  m_deadline.set(m_surroundings.limits.headerTime, shared_from_this());
  const auto [error, size] = co_await http::async_read_header(m_socket, m_buffer, *m_header, kAwait);
  const bool isLate = m_deadline.hasPassed();
  m_deadline.clear();
  if (isLate) co_return errorAnswer(408, "The request took too long.");
  if (error == http::error::header_limit) co_return errorAnswer(431, "The request's header is too large.");
  const bool isGone = error == http::error::end_of_stream || error == http::error::partial_message;
  const bool isHttp = error.category() == http::make_error_code(http::error::bad_method).category();
  if (error && isHttp && !isGone) co_return errorAnswer(400, "This is not an HTTP request.");
  co_return std::nullopt;
}

/// Everything that is decided before a byte of the body is read.
std::variant<Answer, Connection::Admitted> Connection::admit() {
  const auto& fields = m_header->get();
  if (auto refused = refuseAtGate(fields, m_surroundings.hosts)) return std::move(*refused);
  auto target = parseTarget(fields.target());
  if (!target) return errorAnswer(400, "The address is not understood.");
  auto found = findRoute(fields.method(), *target);
  auto* match = std::get_if<RouteMatch>(&found);
  std::optional<store::Device> device;
  if (match == nullptr || match->route->needsToken) {
    const bool inQuery = match != nullptr && match->route->kind == Route::Kind::EventStream;
    const auto token = inQuery ? target->value("access_token") : std::nullopt;
    device = m_surroundings.bridge.deviceOf(token ? std::string_view(*token) : bearerToken(fields));
    if (!device) return errorAnswer(401, "This device is not paired with the bridge.");
  }
  if (const auto* wrong = std::get_if<WrongVerb>(&found)) {
    Answer answer = errorAnswer(405, "This address does not know that method.");
    answer.allow = wrong->allow;
    return answer;
  }
  if (match == nullptr) return errorAnswer(404, "There is nothing at this address.");
  return Admitted{.match = std::move(*match),
                  .target = std::move(*target),
                  .device = std::move(device),
                  .fields = fields,
                  .path = std::string(fields.target())};
}

asio::awaitable<Answer> Connection::handle(Admitted admitted) {
  Answer answer = errorAnswer(500, "The bridge failed. Its log says more.");
  try {
    if (admitted.match.route->kind == Route::Kind::Upload) {
      answer = co_await handleUpload(std::move(admitted));
    } else {
      answer = co_await handleJson(std::move(admitted));
    }
  } catch (const std::exception& error) {
    service::log(std::string("a request failed: ") + error.what());
    answer.closes = true;
  }
  co_return answer;
}

asio::awaitable<Answer> Connection::handleJson(Admitted admitted) {
  auto body = co_await readBody(admitted.match.route->needsToken ? m_surroundings.limits.jsonBytes
                                                                 : m_surroundings.limits.claimBytes);
  if (!body) co_return lastAnswerTo(body.error());
  co_return co_await runHandler(Job{.bridge = m_surroundings.bridge,
                                    .route = *admitted.match.route,
                                    .ids = std::move(admitted.match.ids),
                                    .target = std::move(admitted.target),
                                    .device = std::move(admitted.device),
                                    .path = std::move(admitted.path),
                                    .key = std::string(admitted.fields["Idempotency-Key"]),
                                    .body = std::move(*body),
                                    .time = m_surroundings.limits.handlerTime});
}

asio::awaitable<service::Outcome<std::string>> Connection::readBody(std::uint64_t limit) {
  using Kind = service::Failure::Kind;
  const char* const kTooLarge = "The request is too large.";
  if (m_header->content_length().value_or(0) > limit) co_return service::refuse(Kind::TooLarge, kTooLarge);
  co_await sendContinue();
  http::request_parser<http::string_body> parser(std::move(*m_header));
  parser.body_limit(limit);
  m_deadline.set(m_surroundings.limits.bodyTime, shared_from_this());
  const auto [error, size] = co_await http::async_read(m_socket, m_buffer, parser, kAwait);
  const bool isLate = m_deadline.hasPassed();
  m_deadline.clear();
  if (!error) co_return std::move(parser.get().body());
  if (isLate) co_return service::refuse(Kind::Late, "The request took too long.");
  if (error == http::error::body_limit) co_return service::refuse(Kind::TooLarge, kTooLarge);
  co_return service::refuse(Kind::Invalid, "The request's body does not arrive in full.");
}

asio::awaitable<void> Connection::sendContinue() {
  if (!beast::iequals(m_header->get()[http::field::expect], "100-continue")) co_return;
  constexpr std::string_view kContinue = "HTTP/1.1 100 Continue\r\n\r\n";
  co_await asio::async_write(m_socket, asio::buffer(kContinue), kAwait);
}

/// True when the connection goes on.
asio::awaitable<bool> Connection::send(Wishes wishes, Answer answer) {
  http::response<http::string_body> response;
  response.version(11);
  response.result(static_cast<unsigned>(answer.status));
  response.set(http::field::content_type, "application/json");
  response.set(http::field::cache_control, "no-store");
  response.set("Varnel-Contract", "1");
  if (!answer.allow.empty()) response.set(http::field::allow, answer.allow);
  response.set(http::field::vary, "Accept-Encoding");
  response.body() = std::move(answer.body);
  if (response.body().size() >= kWorthCompressing && wishes.gzip) {
    if (auto packed = gzip(response.body())) {
      response.body() = std::move(*packed);
      response.set(http::field::content_encoding, "gzip");
    }
  }
  const bool goesOn = !answer.closes && wishes.keepAlive;
  response.keep_alive(goesOn);
  response.prepare_payload();
  const std::chrono::seconds time(30 + response.body().size() / kSlowestBytesPerSecond);
  m_deadline.set(time, shared_from_this());
  const auto [error, size] = co_await http::async_write(m_socket, response, kAwait);
  m_deadline.clear();
  if (!error && !goesOn) co_await drain();
  co_return !error && goesOn;
}

/// Reads on for a moment after the last word, since closing over unread data takes the answer away from the peer.
asio::awaitable<void> Connection::drain() {
  boost::system::error_code failed;
  m_socket.shutdown(asio::ip::tcp::socket::shutdown_send, failed);
  if (failed) co_return;
  m_deadline.set(kDrainTime, shared_from_this());
  m_buffer.clear();
  for (;;) {
    const auto [error, size] = co_await m_socket.async_read_some(m_buffer.prepare(16UL * 1024), kAwait);
    if (error || m_deadline.hasPassed()) break;
  }
  m_deadline.clear();
}

}  // namespace varnel::http
