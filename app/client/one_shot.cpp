// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/one_shot.h"

#include <QNetworkProxy>
#include <QUrl>
#include <boost/beast/http/parser.hpp>

#include "core/base/url.h"

namespace varnel::client {

namespace {

namespace http = boost::beast::http;

/// Bytes of a body that wait in the socket at a time.
constexpr qsizetype kSlice = 256 * 1024;
constexpr std::uint32_t kHeaderLimit = 64 * 1024;

/// Puts an answer's bytes into pieces instead of one growing buffer.
struct PiecesBody {
  using value_type = Body;

  class reader {
   public:
    template <bool isRequest, class Fields>
    reader(http::header<isRequest, Fields>&, value_type& body) : m_body(body) {}
    void init(const boost::optional<std::uint64_t>&, boost::beast::error_code& error) { error = {}; }
    template <class Buffers>
    std::size_t put(const Buffers& buffers, boost::beast::error_code& error) {
      error = {};
      std::size_t size = 0;
      for (auto at = boost::asio::buffer_sequence_begin(buffers); at != boost::asio::buffer_sequence_end(buffers);
           ++at) {
        m_body.append(QByteArray(static_cast<const char*>(at->data()), static_cast<qsizetype>(at->size())));
        size += at->size();
      }
      return size;
    }
    void finish(boost::beast::error_code& error) { error = {}; }

   private:
    value_type& m_body;
  };
};

QByteArray bytesOf(std::string_view text) {
  return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

/// The head as it goes on the wire: the path as it was built, the headers in their order, then what HTTP itself needs.
QByteArray headOf(const live::HttpRequest& request, const QUrl& url, qsizetype bodySize) {
  const std::size_t path = request.url.find('/', request.url.find("//") + 2);
  const std::string target = path == std::string::npos ? "/" : request.url.substr(path);
  std::string head = request.method + " " + target +
                     " HTTP/1.1\r\nHost: " + url.authority(QUrl::FullyEncoded).section(u'@', -1).toStdString() + "\r\n";
  for (const live::Header& header : request.headers) head += header.name + ": " + header.value + "\r\n";
  head += "Content-Length: " + std::to_string(bodySize) + "\r\nConnection: close\r\n\r\n";
  return bytesOf(head);
}

}  // namespace

/// Reads one answer out of bytes as they come, interim answers (1xx) skipped.
class OneShot::Parser {
 public:
  explicit Parser(std::int64_t answerLimit) : m_answerLimit(static_cast<std::uint64_t>(answerLimit)) { restart(); }

  /// Takes all bytes it can use; what is left over waits for more.
  boost::beast::error_code put(QByteArray bytes) {
    m_pending += bytes;
    boost::beast::error_code error;
    while (!m_pending.isEmpty() && !m_parser->is_done()) {
      const std::size_t used = m_parser->put(
          boost::asio::const_buffer(m_pending.constData(), static_cast<std::size_t>(m_pending.size())), error);
      m_pending.remove(0, static_cast<qsizetype>(used));
      if (error == http::error::need_more) return {};
      if (error) return error;
      if (m_parser->is_done() && m_parser->get().result_int() / 100 == 1) restart();
      if (used == 0) break;
    }
    return {};
  }
  boost::beast::error_code putEnd() {
    if (!m_parser->got_some()) return http::error::end_of_stream;
    boost::beast::error_code error;
    m_parser->put_eof(error);
    return error;
  }
  [[nodiscard]] bool isDone() const { return m_parser->is_done(); }
  Answer take() {
    const int status = static_cast<int>(m_parser->get().result_int());
    return {status, std::move(m_parser->get().body())};
  }

 private:
  void restart() {
    m_parser.emplace();
    m_parser->eager(true);
    m_parser->header_limit(kHeaderLimit);
    m_parser->body_limit(m_answerLimit);
  }

  std::uint64_t m_answerLimit;
  QByteArray m_pending;
  std::optional<http::response_parser<PiecesBody>> m_parser;
};

OneShot::OneShot(const live::HttpRequest& request, QByteArray body, const ExchangeLimits& limits)
    : m_body(std::move(body)), m_limits(limits), m_parser(std::make_unique<Parser>(limits.answerLimit)) {
  const QUrl url = QUrl::fromEncoded(bytesOf(request.url), QUrl::StrictMode);
  const bool secure = url.scheme() == u"https";
  m_head = headOf(request, url, m_body.size());
  m_silence.setSingleShot(true);
  m_silence.setInterval(limits.timeout);
  QObject::connect(&m_silence, &QTimer::timeout, &m_silence, [this] { fail(timedOut()); });
  QObject::connect(&m_socket, secure ? &QSslSocket::encrypted : &QSslSocket::connected, &m_silence,
                   [this] { begin(); });
  QObject::connect(&m_socket, &QSslSocket::bytesWritten, &m_silence, [this] { writeSome(); });
  QObject::connect(&m_socket, &QSslSocket::readyRead, &m_silence, [this] { readAll(); });
  QObject::connect(&m_socket, &QSslSocket::errorOccurred, &m_silence, [this] { failBySocket(); });
  m_socket.setProxy(QNetworkProxy::NoProxy);
  m_silence.start();
  const auto port = static_cast<quint16>(url.port(secure ? 443 : 80));
  if (secure) {
    m_socket.connectToHostEncrypted(url.host(), port);
  } else {
    m_socket.connectToHost(url.host(), port);
  }
}

OneShot::~OneShot() {
  m_socket.disconnect();
  m_socket.abort();
}

void OneShot::begin() {
  m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
  m_socket.write(m_head);
  writeSome();
}

void OneShot::writeSome() {
  m_silence.start();
  const bool room = m_socket.bytesToWrite() + m_socket.encryptedBytesToWrite() < kSlice;
  if (m_done || !room || m_written == m_body.size()) return;
  const qsizetype size = std::min(kSlice, m_body.size() - m_written);
  const qint64 taken = m_socket.write(m_body.constData() + m_written, size);
  if (taken > 0) m_written += taken;
}

void OneShot::readAll() {
  if (m_done) return;
  m_silence.start();
  const boost::beast::error_code error = m_parser->put(m_socket.readAll());
  if (error == http::error::body_limit) {
    fail(tooLarge(m_limits));
  } else if (error) {
    fail(APIError{APIError::Kind::InvalidResponse, 0, {}});
  } else if (m_parser->isDone()) {
    m_done = true;
    m_silence.stop();
    m_ended.open();
  }
}

/// The other side has closed: an answer without a length ends here, any other was cut off.
void OneShot::readEnd() {
  readAll();
  if (m_done) return;
  if (!m_parser->putEnd() && m_parser->isDone()) {
    m_done = true;
    m_ended.open();
  }
}

void OneShot::failBySocket() {
  if (m_socket.error() == QAbstractSocket::RemoteHostClosedError) readEnd();
  fail(TransportError{TransportError::Kind::Failed, m_socket.errorString().toStdString()});
}

void OneShot::fail(ClientError error) {
  if (std::exchange(m_done, true)) return;
  m_failure = std::move(error);
  m_silence.stop();
  m_ended.open();
}

Result<Answer> OneShot::take() {
  if (m_failure) return std::unexpected(*std::move(m_failure));
  return m_parser->take();
}

}  // namespace varnel::client
