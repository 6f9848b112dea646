// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/http_exchange.h"

#include <QNetworkProxy>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>
#include <optional>

#include "app/client/async.h"

namespace varnel::client {

namespace {

/// Bytes that are written or read in one turn of the event loop.
constexpr qsizetype kSlice = 256 * 1024;

QByteArray bytesOf(std::string_view text) {
  return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

/// The head as it goes on the wire: the path as it was built, the headers in their order, then what HTTP itself needs.
QByteArray headOf(const live::HttpRequest& request, const QUrl& url, qsizetype bodySize) {
  const std::size_t path = request.url.find_first_of("/?", request.url.find("//") + 2);
  const std::string target = path == std::string::npos ? "/" : request.url.substr(path);
  std::string head = request.method + " " + target + " HTTP/1.1\r\n";
  head += "Host: " + url.authority(QUrl::FullyEncoded).section(u'@', -1).toStdString() + "\r\n";
  for (const live::Header& header : request.headers) head += header.name + ": " + header.value + "\r\n";
  if (request.method != "GET") head += "Content-Length: " + std::to_string(bodySize) + "\r\n";
  return bytesOf(head + "Accept-Encoding: gzip\r\nConnection: close\r\n\r\n");
}

/// One request and its answer. QNetworkAccessManager is not used: it sends a request again, a POST too, up to four
/// times, when the server closes without answering ("Connection: close" does not keep it from that). Lives in the frame
/// of `exchange`; every way to end opens the gate, and the connection goes with the object.
class Exchange {
 public:
  Exchange(const live::HttpRequest& request, const QUrl& url, QByteArray body, const ExchangeLimits& limits);
  ~Exchange();
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  void connectTo(const QUrl& url);
  Gate& ended() { return m_ended; }
  void cancel() { fail(Cancelled{}); }
  Result<Answer> take();

 private:
  void begin();
  void writeSome();
  void readSome();
  void becomes(AnswerParser::State state);
  void socketFailed();
  void fail(ClientError error);

  QByteArray m_head;
  QByteArray m_body;
  qsizetype m_written = 0;  ///< bytes of the body
  ExchangeLimits m_limits;
  QSslSocket m_socket;
  QTimer m_silence;
  AnswerParser m_parser;
  std::optional<ClientError> m_failure;
  bool m_done = false;
  Gate m_ended;
};

Exchange::Exchange(const live::HttpRequest& request, const QUrl& url, QByteArray body, const ExchangeLimits& limits)
    : m_head(headOf(request, url, body.size())),
      m_body(std::move(body)),
      m_limits(limits),
      m_parser(limits.answerLimit) {
  m_silence.setSingleShot(true);
  m_silence.setInterval(limits.timeout);
  QObject::connect(&m_silence, &QTimer::timeout, &m_silence,
                   [this] { fail(TransportError{TransportError::Kind::TimedOut, "The request timed out."}); });
  QObject::connect(&m_socket, &QSslSocket::bytesWritten, &m_silence, [this] { writeSome(); });
  QObject::connect(&m_socket, &QSslSocket::readyRead, &m_silence, [this] { readSome(); });
  QObject::connect(&m_socket, &QSslSocket::errorOccurred, &m_silence, [this] { socketFailed(); });
  m_socket.setProxy(QNetworkProxy::NoProxy);
  m_socket.setReadBufferSize(kSlice);
}

Exchange::~Exchange() {
  m_socket.disconnect();
  m_socket.abort();
}

void Exchange::connectTo(const QUrl& url) {
  m_silence.start();
  const bool secure = url.scheme() == u"https";
  QObject::connect(&m_socket, secure ? &QSslSocket::encrypted : &QSslSocket::connected, &m_silence,
                   [this] { begin(); });
  const auto port = static_cast<quint16>(url.port(secure ? 443 : 80));
  if (secure) {
    m_socket.connectToHostEncrypted(url.host(), port);
  } else {
    m_socket.connectToHost(url.host(), port);
  }
}

void Exchange::begin() {
  if (m_done) return;
  m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
  m_socket.write(m_head);
  writeSome();
}

void Exchange::writeSome() {
  if (m_done) return;
  m_silence.start();
  const bool room = m_socket.bytesToWrite() + m_socket.encryptedBytesToWrite() < kSlice;
  if (!room || m_written == m_body.size()) return;
  const qint64 taken = m_socket.write(m_body.constData() + m_written, std::min(kSlice, m_body.size() - m_written));
  if (taken > 0) m_written += taken;
}

void Exchange::readSome() {
  if (m_done) return;
  m_silence.start();
  const QByteArray bytes = m_socket.readAll();  // a slice at most, see setReadBufferSize
  becomes(m_parser.put({bytes.constData(), static_cast<std::size_t>(bytes.size())}));
}

void Exchange::becomes(AnswerParser::State state) {
  switch (state) {
    case AnswerParser::State::NeedsMore:
      break;
    case AnswerParser::State::Done:
      m_done = true;
      m_silence.stop();
      m_ended.open();
      break;
    case AnswerParser::State::Invalid:
      fail(APIError{APIError::Kind::InvalidResponse, 0, {}});
      break;
    case AnswerParser::State::TooLarge:
      fail(TransportError{TransportError::Kind::TooLarge, "The answer of the bridge is larger than " +
                                                              std::to_string(m_limits.answerLimit >> 20) + " MiB."});
      break;
    case AnswerParser::State::CutOff:
      fail(TransportError{TransportError::Kind::Failed, m_socket.errorString().toStdString()});
      break;
  }
}

void Exchange::socketFailed() {
  while (!m_done && m_socket.bytesAvailable() > 0) readSome();
  const bool closed = m_socket.error() == QAbstractSocket::RemoteHostClosedError;
  if (!m_done) becomes(closed ? m_parser.putEnd() : AnswerParser::State::CutOff);
}

void Exchange::fail(ClientError error) {
  if (std::exchange(m_done, true)) return;
  m_failure = std::move(error);
  m_silence.stop();
  m_ended.open();
}

Result<Answer> Exchange::take() {
  if (m_failure) return std::unexpected(*std::move(m_failure));
  return m_parser.take();
}

}  // namespace

Task<Result<Answer>> exchange(live::HttpRequest request, QByteArray file, ExchangeLimits limits, std::stop_token stop) {
  if (stop.stop_requested()) co_return std::unexpected(ClientError(Cancelled{}));
  const QUrl url = QUrl::fromEncoded(bytesOf(request.url), QUrl::StrictMode);
  if (!url.isValid() || url.host().isEmpty() || (url.scheme() != u"http" && url.scheme() != u"https")) {
    co_return std::unexpected(ClientError(live::RequestError{live::RequestError::Kind::InvalidAddress,
                                                             "The address of the bridge is not an HTTP address."}));
  }
  Exchange running(request, url, request.body ? bytesOf(*request.body) : std::move(file), limits);
  running.connectTo(url);
  {
    std::stop_callback onStop(stop, [&running] { running.cancel(); });
    co_await running.ended().wait();
  }
  if (stop.stop_requested()) co_return std::unexpected(ClientError(Cancelled{}));
  co_return running.take();
}

}  // namespace varnel::client
