// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::support {

inline constexpr std::chrono::seconds kPatience{10};

/// A connection to a loopback port, to the last byte as the test wants it; every wait ends after `kPatience`. Throws
/// when it cannot connect.
class RawConnection {
 public:
  explicit RawConnection(std::uint16_t port);
  ~RawConnection();
  RawConnection(RawConnection&& other) noexcept;
  RawConnection& operator=(RawConnection&&) = delete;

  /// False when the other side has closed.
  bool send(std::string_view bytes);
  /// Everything up to and with the mark; nothing when the other side closes before or says nothing.
  std::optional<std::string> readUntil(std::string_view mark);
  std::optional<std::string> readBytes(std::size_t count) {
    return readWithin(count, std::chrono::steady_clock::now() + kPatience);
  }
  std::optional<std::string> readWithin(std::size_t count, std::chrono::steady_clock::time_point end);
  /// True when the other side closes within that time, whatever it says before.
  bool closesWithin(std::chrono::milliseconds time);
  /// True when the other side cuts the connection within that time, nothing being read.
  [[nodiscard]] bool isCutWithin(std::chrono::milliseconds time) const;

 private:
  bool receive(std::chrono::steady_clock::time_point end);
  int m_socket;
  std::string m_received;
};

struct Response {
  int status = 0;                              ///< 0 when there was none
  std::map<std::string, std::string> headers;  ///< names in lower case
  std::string body;
};

using Headers = std::vector<std::pair<std::string, std::string>>;

struct Request {
  std::string method = "GET";
  std::string path;
  std::string token;
  std::optional<std::string> body = std::nullopt;
  Headers headers;  ///< beside Host, Authorization and Content-Length
};

std::string textOf(const Request& request, std::uint16_t port);
std::optional<Response> readResponse(RawConnection& connection);
/// One request on a connection of its own.
Response send(std::uint16_t port, const Request& request);

/// The event stream's other end.
class EventClient {
 public:
  EventClient(std::uint16_t port, const std::string& token, std::int64_t after);

  /// The status of the upgrade; 101 when there is a stream.
  [[nodiscard]] int status() const { return m_status; }
  /// The next event's text, pings being answered; nothing when the stream ends or stays silent that long.
  std::optional<std::string> next(std::chrono::milliseconds patience = kPatience);
  bool closesWithin(std::chrono::milliseconds time) { return m_connection.closesWithin(time); }
  [[nodiscard]] bool isCutWithin(std::chrono::milliseconds time) const { return m_connection.isCutWithin(time); }

 private:
  RawConnection m_connection;
  int m_status = 0;
};

}  // namespace varnel::support
