// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "host/http/answer.h"
#include "host/http/deadline.h"
#include "host/http/gate.h"
#include "host/http/limits.h"
#include "host/http/routes.h"
#include "host/store/devices.h"

namespace varnel::http {

class ArrivingFile;

/// What every connection of a server shares; outlives them all.
struct Surroundings {
  service::Bridge& bridge;
  AllowedHosts hosts;
  Limits limits;
};

/// One connection of a phone: reads a request, checks it before its body is read, has it handled and answers, until
/// either side closes or it becomes an event stream. What escapes from a request ends that request only.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  Connection(boost::asio::ip::tcp::socket socket, Surroundings& surroundings);

  static boost::asio::awaitable<void> serve(std::shared_ptr<Connection> self);
  /// Says that there are too many connections, and closes.
  static boost::asio::awaitable<void> turnAway(std::shared_ptr<Connection> self);
  /// Ends it at once.
  void close();

 private:
  using Header = boost::beast::http::request_parser<boost::beast::http::empty_body>;
  /// What the answer depends on, whatever becomes of the request.
  struct Wishes {
    bool keepAlive = false;
    bool gzip = false;
  };
  /// A request that has passed the gate; its body is still on the way.
  struct Admitted {
    RouteMatch match;
    Target target;
    std::optional<store::Device> device;
    boost::beast::http::fields fields;
    std::string path;  ///< as it was written
  };

  boost::asio::awaitable<bool> serveOne();
  boost::asio::awaitable<std::optional<Answer>> readHeader();
  boost::asio::awaitable<bool> readFirstPiece();
  std::variant<Answer, Admitted> admit();
  boost::asio::awaitable<Answer> handle(Admitted admitted);
  boost::asio::awaitable<Answer> handleJson(Admitted admitted);
  boost::asio::awaitable<Answer> handleUpload(Admitted admitted);
  boost::asio::awaitable<service::Outcome<std::string>> readBody(std::uint64_t limit);
  boost::asio::awaitable<service::Outcome<void>> receive(std::shared_ptr<ArrivingFile> file);
  boost::asio::awaitable<void> sendContinue();
  boost::asio::awaitable<bool> send(Wishes wishes, Answer answer);
  boost::asio::awaitable<void> drain();

  boost::asio::ip::tcp::socket m_socket;
  Surroundings& m_surroundings;
  boost::beast::flat_buffer m_buffer;
  std::optional<Header> m_header;  ///< of the request in hand; moved from once its body is read
  Deadline m_deadline;
  bool m_hasServed = false;
};

}  // namespace varnel::http
