// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/support/http_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>
#include <utility>

namespace varnel::support {

using Time = std::chrono::steady_clock;

namespace {

std::string lowerCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace

RawConnection::RawConnection(std::uint16_t port) : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    throw std::runtime_error("nothing listens on the port");
  }
}

RawConnection::~RawConnection() {
  if (m_socket >= 0) ::close(m_socket);
}

RawConnection::RawConnection(RawConnection&& other) noexcept
    : m_socket(std::exchange(other.m_socket, -1)), m_received(std::move(other.m_received)) {}

bool RawConnection::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

bool RawConnection::receive(Time::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Time::now()).count();
  pollfd ready{.fd = m_socket, .events = POLLIN, .revents = 0};
  if (left <= 0 || ::poll(&ready, 1, static_cast<int>(left)) <= 0) return false;
  std::array<char, 65536> piece{};
  const auto size = ::recv(m_socket, piece.data(), piece.size(), 0);
  if (size <= 0) return false;
  m_received.append(piece.data(), static_cast<std::size_t>(size));
  return true;
}

std::optional<std::string> RawConnection::readUntil(std::string_view mark) {
  const auto end = Time::now() + kPatience;
  for (;;) {
    if (const auto found = m_received.find(mark); found != std::string::npos) return readBytes(found + mark.size());
    if (!receive(end)) return std::nullopt;
  }
}

std::optional<std::string> RawConnection::readWithin(std::size_t count, Time::time_point end) {
  while (m_received.size() < count) {
    if (!receive(end)) return std::nullopt;
  }
  std::string bytes = m_received.substr(0, count);
  m_received.erase(0, count);
  return bytes;
}

bool RawConnection::closesWithin(std::chrono::milliseconds time) {
  const auto end = Time::now() + time;
  while (receive(end)) {
  }
  return Time::now() < end;
}

bool RawConnection::isCutWithin(std::chrono::milliseconds time) const {
  pollfd cut{.fd = m_socket, .events = 0, .revents = 0};
  return ::poll(&cut, 1, static_cast<int>(time.count())) == 1;
}

std::string textOf(const Request& request, std::uint16_t port) {
  std::string text = request.method + " " + request.path + " HTTP/1.1\r\n";
  const bool hasHost = std::ranges::any_of(request.headers, [](const auto& header) { return header.first == "Host"; });
  if (!hasHost) text += "Host: 127.0.0.1:" + std::to_string(port) + "\r\n";
  if (!request.token.empty()) text += "Authorization: Bearer " + request.token + "\r\n";
  if (request.body) text += "Content-Length: " + std::to_string(request.body->size()) + "\r\n";
  for (const auto& [name, value] : request.headers) text.append(name).append(": ").append(value).append("\r\n");
  return text + "\r\n" + request.body.value_or("");
}

std::optional<Response> readResponse(RawConnection& connection) {
  const auto head = connection.readUntil("\r\n\r\n");
  if (!head) return std::nullopt;
  Response response{.status = std::atoi(head->c_str() + head->find(' ')), .headers = {}, .body = {}};
  for (auto begin = head->find("\r\n") + 2; begin < head->size() - 2; begin = head->find("\r\n", begin) + 2) {
    const auto colon = head->find(": ", begin);
    response.headers[lowerCase(head->substr(begin, colon - begin))] =
        head->substr(colon + 2, head->find("\r\n", begin) - colon - 2);
  }
  const auto length = response.headers.find("content-length");
  if (length == response.headers.end()) return response;
  auto body = connection.readBytes(std::stoul(length->second));
  if (!body) return std::nullopt;
  response.body = std::move(*body);
  return response;
}

Response send(std::uint16_t port, const Request& request) {
  RawConnection connection(port);
  connection.send(textOf(request, port));
  return readResponse(connection).value_or(Response{});
}

EventClient::EventClient(std::uint16_t port, const std::string& token, std::int64_t after) : m_connection(port) {
  m_connection.send(textOf({.path = "/v1/events?after=" + std::to_string(after) + "&access_token=" + token,
                            .headers = {{"Connection", "Upgrade"},
                                        {"Upgrade", "websocket"},
                                        {"Sec-WebSocket-Version", "13"},
                                        {"Sec-WebSocket-Key", "dGhlIHNhbXBsZSBub25jZQ=="}}},
                           port));
  if (const auto response = readResponse(m_connection)) m_status = response->status;
}

std::optional<std::string> EventClient::next(std::chrono::milliseconds patience) {
  constexpr unsigned kText = 1;
  constexpr unsigned kPing = 9;
  const auto end = Time::now() + patience;
  while (Time::now() < end) {
    const auto head = m_connection.readWithin(2, end);
    if (!head) return std::nullopt;
    const unsigned kind = static_cast<unsigned char>((*head)[0]) & 15U;
    std::size_t size = static_cast<unsigned char>((*head)[1]);
    if (size == 126) {
      const auto longer = m_connection.readBytes(2);
      if (!longer) return std::nullopt;
      size = static_cast<std::size_t>(static_cast<unsigned char>((*longer)[0])) * 256 +
             static_cast<unsigned char>((*longer)[1]);
    }
    auto payload = m_connection.readBytes(size);
    if (!payload) return std::nullopt;
    if (kind == kText) return payload;
    if (kind != kPing) return std::nullopt;
    // A pong, masked with zeros.
    m_connection.send(std::string("\x8a") + static_cast<char>(0x80U | size) + std::string(4, '\0') + *payload);
  }
  return std::nullopt;
}

}  // namespace varnel::support
