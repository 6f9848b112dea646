// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/http_exchange.h"

#include <QMetaObject>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>
#include <optional>

#include "app/client/async.h"
#include "app/client/one_shot.h"

namespace varnel::client {

namespace {

/// A reply that is aborted, and deleted from the event loop, when its owner lets go of it.
using Reply = std::unique_ptr<QNetworkReply, void (*)(QNetworkReply*)>;

/// Bytes taken from the network in one turn of the event loop.
constexpr qint64 kSlice = 256 * 1024;

void dispose(QNetworkReply* reply) {
  reply->disconnect();
  reply->abort();
  reply->deleteLater();
}

QByteArray bytesOf(std::string_view text) {
  return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

/// Collects the answer to a GET. Lives as long as one exchange; every way to end opens its gate.
class Collector {
 public:
  Collector(Reply reply, const ExchangeLimits& limits);

  Gate& ended() { return m_ended; }
  void cancel() { fail(Cancelled{}); }
  Result<Answer> take();

 private:
  void readSome();
  void fail(ClientError error);
  void finish();
  [[nodiscard]] std::optional<ClientError> verdict(int status) const;

  Reply m_reply;
  ExchangeLimits m_limits;
  QTimer m_silence;
  Body m_body;
  bool m_finished = false;
  std::optional<ClientError> m_failure;
  Gate m_ended;
};

Collector::Collector(Reply reply, const ExchangeLimits& limits) : m_reply(std::move(reply)), m_limits(limits) {
  m_silence.setSingleShot(true);
  m_silence.setInterval(limits.timeout);
  QObject::connect(&m_silence, &QTimer::timeout, &m_silence,
                   [this] { fail(TransportError{TransportError::Kind::TimedOut, "The request timed out."}); });
  const auto moved = [this] { m_silence.start(); };
  QObject::connect(m_reply.get(), &QNetworkReply::uploadProgress, &m_silence, moved);
  QObject::connect(m_reply.get(), &QNetworkReply::metaDataChanged, &m_silence, moved);
  QObject::connect(m_reply.get(), &QNetworkReply::readyRead, &m_silence, [this] {
    m_silence.start();
    readSome();
  });
  QObject::connect(m_reply.get(), &QNetworkReply::finished, &m_silence, [this] { finish(); });
  m_silence.start();
}

void Collector::readSome() {
  if (m_failure || !m_reply->isOpen()) return;
  const QByteArray piece = m_reply->read(kSlice);
  if (!piece.isEmpty()) m_body.append(piece);
  if (m_body.size() > m_limits.answerLimit) {
    fail(tooLarge(m_limits));
    return;
  }
  const bool more = m_reply->bytesAvailable() > 0;
  if (more) {
    QMetaObject::invokeMethod(&m_silence, [this] { readSome(); }, Qt::QueuedConnection);
  } else if (m_finished) {
    m_ended.open();
  }
}

void Collector::finish() {
  if (m_failure) return;
  m_silence.stop();
  m_finished = true;
  readSome();
  if (!m_reply->isOpen()) m_ended.open();
}

void Collector::fail(ClientError error) {
  if (m_failure) return;
  m_failure = std::move(error);
  m_silence.stop();
  m_reply->abort();
  m_ended.open();
}

Result<Answer> Collector::take() {
  if (m_failure) return std::unexpected(*std::move(m_failure));
  const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  if (auto error = verdict(status)) return std::unexpected(*std::move(error));
  return Answer{status, std::move(m_body)};
}

std::optional<ClientError> Collector::verdict(int status) const {
  const QNetworkReply::NetworkError error = m_reply->error();
  if (error == QNetworkReply::NoError && status != 0) return std::nullopt;
  if (status == 0 && (error == QNetworkReply::NoError || error == QNetworkReply::ProtocolFailure)) {
    return APIError{APIError::Kind::InvalidResponse, 0, {}};
  }
  // Errors up to 99 come from the connection: with a status, the answer broke off. Those above restate the status,
  // except on a success, where they tell of a body that cannot be read.
  const bool success = status >= 200 && status <= 299;
  if (status != 0 && error > 99 && !success) return std::nullopt;
  return TransportError{TransportError::Kind::Failed, m_reply->errorString().toStdString()};
}

QNetworkRequest toQt(const live::HttpRequest& request) {
  QNetworkRequest out(QUrl::fromEncoded(bytesOf(request.url), QUrl::StrictMode));
  for (const live::Header& header : request.headers) out.setRawHeader(bytesOf(header.name), bytesOf(header.value));
  out.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  out.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  out.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  out.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
  out.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  // Over plain HTTP its offer would add an upgrade to every first request.
  out.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  // A list of equal rows compresses well; the limit on the answer itself takes the place of the ratio's.
  out.setDecompressedSafetyCheckThreshold(-1);
  return out;
}

template <class Collecting>
Task<Result<Answer>> outcomeOf(std::unique_ptr<Collecting> collecting, std::stop_token stop) {
  {
    std::stop_callback onStop(stop, [&collecting] { collecting->cancel(); });
    co_await collecting->ended().wait();
  }
  if (stop.stop_requested()) co_return std::unexpected(ClientError(Cancelled{}));
  co_return collecting->take();
}

}  // namespace

Network::Network() {
  manager.setProxy(QNetworkProxy::NoProxy);
}

TransportError timedOut() {
  return {TransportError::Kind::TimedOut, "The request timed out."};
}

TransportError tooLarge(const ExchangeLimits& limits) {
  return {TransportError::Kind::TooLarge,
          "The answer of the bridge is larger than " + std::to_string(limits.answerLimit >> 20) + " MiB."};
}

Task<Result<Answer>> exchange(std::shared_ptr<Network> network, live::HttpRequest request, QByteArray body,
                              ExchangeLimits limits, std::stop_token stop) {
  if (stop.stop_requested()) co_return std::unexpected(ClientError(Cancelled{}));
  const QUrl url = QUrl::fromEncoded(bytesOf(request.url), QUrl::StrictMode);
  if (!url.isValid() || url.host().isEmpty() || (url.scheme() != u"http" && url.scheme() != u"https")) {
    co_return std::unexpected(ClientError(live::RequestError{live::RequestError::Kind::InvalidAddress,
                                                             "The address of the bridge is not an HTTP address."}));
  }
  if (request.method == "GET") {
    Reply reply(network->manager.get(toQt(request)), dispose);
    co_return co_await outcomeOf(std::make_unique<Collector>(std::move(reply), limits), stop);
  }
  if (request.body) body = bytesOf(*request.body);
  co_return co_await outcomeOf(std::make_unique<OneShot>(request, std::move(body), limits), stop);
}

}  // namespace varnel::client
