// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/event_stream.h"

#include <QNetworkProxy>
#include <QRegularExpression>
#include <QTimer>
#include <QUrl>
#include <QWebSocket>
#include <deque>
#include <optional>

#include "app/client/async.h"

namespace varnel::client {

struct EventStream::State {
  State(std::string streamAddress, Options streamOptions);
  ~State();
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void receive(const QByteArray& message);
  /// The bridge is there: it need not be asked for a while.
  void heard();
  void silent();
  /// Remembers why the connection ended, once, and lets the waits go on. The socket is given up from the event loop,
  /// for this may run inside one of its signals.
  void end(ClientError why);
  void endBySocket();
  void cancel();

  std::string address;
  Options options;
  QWebSocket socket;
  QTimer deadline;
  QTimer silence;
  bool asked = false;  ///< a ping is out
  std::deque<std::string> queue;
  std::int64_t queued = 0;  ///< bytes
  bool upgraded = false;
  std::optional<ClientError> ended;
  Gate* openGate = nullptr;  ///< of the coroutine in `opened`
  Gate* nextGate = nullptr;  ///< of the coroutine in `next`
};

namespace {

void openIfAny(Gate* gate) {
  if (gate != nullptr) gate->open();
}

/// The network stack's own words, unless they quote an address: that one carries the token.
std::string harmless(const QString& text) {
  if (text.isEmpty() || text.contains(u"://") || text.contains(u"access_token")) {
    return "The connection to the bridge failed.";
  }
  return text.toStdString();
}

/// QWebSocket tells the status of a refused upgrade in the text alone: "... status code: 401 (Unauthorized)."
int refusalStatus(const QString& text) {
  static const QRegularExpression kPattern(QStringLiteral(": ([1-5][0-9][0-9]) \\("));
  const QRegularExpressionMatch match = kPattern.match(text);
  return match.hasMatch() ? match.captured(1).toInt() : 0;
}

}  // namespace

EventStream::State::State(std::string streamAddress, Options streamOptions)
    : address(std::move(streamAddress)), options(streamOptions) {
  const auto limit = static_cast<quint64>(options.queueLimit);
  socket.setMaxAllowedIncomingFrameSize(limit);
  socket.setMaxAllowedIncomingMessageSize(limit);
  socket.setProxy(QNetworkProxy::NoProxy);
  deadline.setSingleShot(true);
  deadline.setInterval(options.timeout);
  // All of them before `open`: the first message may come in one packet with the upgrade.
  QObject::connect(&socket, &QWebSocket::connected, &deadline, [this] {
    deadline.stop();
    upgraded = true;
    heard();
    openIfAny(openGate);
  });
  QObject::connect(&socket, &QWebSocket::pong, &deadline, [this] { heard(); });
  silence.setSingleShot(true);
  QObject::connect(&silence, &QTimer::timeout, &deadline, [this] { silent(); });
  QObject::connect(&socket, &QWebSocket::textMessageReceived, &deadline,
                   [this](const QString& text) { receive(text.toUtf8()); });
  QObject::connect(&socket, &QWebSocket::binaryMessageReceived, &deadline,
                   [this](const QByteArray& bytes) { receive(bytes); });
  QObject::connect(&socket, &QWebSocket::disconnected, &deadline, [this] { endBySocket(); });
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  QObject::connect(&socket, &QWebSocket::errorOccurred, &deadline, [this] { endBySocket(); });
#else
  QObject::connect(&socket, QOverload<QAbstractSocket::SocketError>::of(&QWebSocket::error), &deadline,
                   [this] { endBySocket(); });
#endif
  QObject::connect(&deadline, &QTimer::timeout, &deadline,
                   [this] { end(TransportError{TransportError::Kind::TimedOut, "The request timed out."}); });
}

EventStream::State::~State() {
  socket.disconnect();
  socket.abort();
}

void EventStream::State::heard() {
  if (ended) return;
  asked = false;
  silence.start(options.pingAfter);
}

void EventStream::State::silent() {
  if (asked) {
    end(TransportError{TransportError::Kind::TimedOut, "The bridge does not answer any more."});
    return;
  }
  asked = true;
  silence.start(options.pongWithin);
  socket.ping();
}

void EventStream::State::receive(const QByteArray& message) {
  if (ended) return;
  heard();
  queued += message.size();
  if (queued > options.queueLimit) {
    end(TransportError{TransportError::Kind::TooLarge, "The bridge sends more events than can be taken."});
    return;
  }
  queue.emplace_back(message.constData(), static_cast<std::size_t>(message.size()));
  openIfAny(nextGate);
}

void EventStream::State::end(ClientError why) {
  if (ended) return;
  ended = std::move(why);
  deadline.stop();
  silence.stop();
  QMetaObject::invokeMethod(&socket, [this] { socket.abort(); }, Qt::QueuedConnection);
  openIfAny(openGate);
  openIfAny(nextGate);
}

void EventStream::State::endBySocket() {
  const QString text = socket.errorString();
  const int status = upgraded ? 0 : refusalStatus(text);
  if (status != 0) {
    end(APIError{APIError::Kind::Server, status, "Bridge error"});
  } else if (socket.error() == QAbstractSocket::UnknownSocketError && upgraded) {
    end(TransportError{TransportError::Kind::Failed, "The bridge closed the connection."});
  } else {
    end(TransportError{TransportError::Kind::Failed, harmless(text)});
  }
}

void EventStream::State::cancel() {
  queue.clear();
  if (!ended) {
    end(Cancelled{});
    socket.abort();
  }
  ended = Cancelled{};
}

namespace {

/// Waits at a gate that the connection knows for as long as the wait lasts.
template <class State>
Task<void> waitAt(std::shared_ptr<State> state, Gate* State::* slot, std::stop_token stop) {
  Gate gate;
  (*state).*slot = &gate;
  {
    std::stop_callback onStop(stop, [&state] { state->cancel(); });
    co_await gate.wait();
  }
  (*state).*slot = nullptr;
}

template <class State>
Task<Result<void>> waitOpened(std::shared_ptr<State> state, std::stop_token stop) {
  if (!state->upgraded && !state->ended) co_await waitAt(state, &State::openGate, stop);
  if (stop.stop_requested()) state->cancel();
  if (state->ended && (!state->upgraded || isCancelled(*state->ended))) co_return std::unexpected(*state->ended);
  co_return Result<void>();
}

template <class State>
Task<Result<EventStream::Message>> waitNext(std::shared_ptr<State> state, std::stop_token stop) {
  if (state->queue.empty() && !state->ended) co_await waitAt(state, &State::nextGate, stop);
  if (stop.stop_requested()) state->cancel();
  if (state->queue.empty()) co_return std::unexpected(*state->ended);
  EventStream::Message message{std::move(state->queue.front())};
  state->queue.pop_front();
  state->queued -= static_cast<std::int64_t>(message.bytes.size());
  co_return message;
}

}  // namespace

EventStream::EventStream(std::string address, Options options)
    : m_state(std::make_shared<State>(std::move(address), options)) {}

EventStream::~EventStream() {
  m_state->cancel();
}

void EventStream::open() {
  const QByteArray address = QByteArray::fromStdString(m_state->address);
  m_state->deadline.start();
  m_state->socket.open(QUrl::fromEncoded(address, QUrl::StrictMode));
}

Task<Result<void>> EventStream::opened(std::stop_token stop) {
  return waitOpened(m_state, std::move(stop));
}

Task<Result<EventStream::Message>> EventStream::next(std::stop_token stop) {
  return waitNext(m_state, std::move(stop));
}

bool EventStream::isConnected() const {
  return m_state->upgraded && !m_state->ended;
}

void EventStream::close() {
  m_state->cancel();
}

}  // namespace varnel::client
