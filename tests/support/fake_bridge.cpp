// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/support/fake_bridge.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <QCryptographicHash>
#include <QTcpSocket>
#include <algorithm>
#include <cctype>

namespace varnel::support {

namespace {

constexpr std::string_view kHeadEnd = "\r\n\r\n";

bool equalWithoutCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

SeenRequest parseHead(std::string_view head) {
  SeenRequest request;
  const std::string_view line = head.substr(0, head.find("\r\n"));
  request.method = line.substr(0, line.find(' '));
  const std::size_t target = request.method.size() + 1;
  request.target = line.substr(target, line.rfind(' ') - target);
  for (std::size_t at = line.size() + 2; at < head.size();) {
    const std::size_t end = std::min(head.find("\r\n", at), head.size());
    const std::string_view field = head.substr(at, end - at);
    const std::size_t colon = field.find(':');
    std::string_view value = field.substr(std::min(colon + 1, field.size()));
    while (value.starts_with(' ')) value.remove_prefix(1);
    request.headers.emplace_back(field.substr(0, colon), value);
    at = end + 2;
  }
  return request;
}

std::string upgradeAnswer(const SeenRequest& request) {
  const std::string text = request.header("Sec-WebSocket-Key").value_or("") + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
  const QByteArray digest = QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Sha1);
  return "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Accept: " +
         digest.toBase64().toStdString() + "\r\n\r\n";
}

std::string frame(char opcode, std::string_view payload) {
  std::string out(1, static_cast<char>(0x80 | opcode));
  const auto size = payload.size();
  const auto appendSize = [&out, size](int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) out += static_cast<char>((size >> shift) & 0xff);
  };
  if (size < 126) {
    appendSize(1);
  } else if (size < 65536) {
    out += static_cast<char>(126);
    appendSize(2);
  } else {
    out += static_cast<char>(127);
    appendSize(8);
  }
  return out.append(payload);
}

QByteArray bytesOf(std::string_view text) {
  return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

std::optional<std::string> SeenRequest::header(std::string_view name) const {
  for (const auto& [key, value] : headers) {
    if (equalWithoutCase(key, name)) return value;
  }
  return std::nullopt;
}

Script Script::json(int status, std::string_view body) {
  return {.bytes = "HTTP/1.1 " + std::to_string(status) + " Status\r\nContent-Type: application/json\r\n" +
                   "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body)};
}

Script Script::redirect(int status, std::string_view location) {
  return {.bytes = "HTTP/1.1 " + std::to_string(status) + " Moved\r\nLocation: " + std::string(location) +
                   "\r\nContent-Length: 0\r\n\r\n"};
}

Script Script::shortBody(std::string_view body, std::size_t sent, Then then) {
  Script script = json(200, body);
  script.bytes.resize(script.bytes.size() - body.size() + sent);
  script.then = then;
  return script;
}

Script Script::raw(std::string bytes, Then then) {
  return {.bytes = std::move(bytes), .then = then};
}

Script Script::silence() {
  return {};
}

Script Script::drop(Then then) {
  return {.bytes = {}, .then = then};
}

Script Script::acceptStream(std::vector<std::string> first) {
  return {.bytes = {}, .stream = std::move(first)};
}

FakeBridge::FakeBridge() {
  connect(&m_server, &QTcpServer::newConnection, this, &FakeBridge::accept);
  if (!m_server.listen(QHostAddress::LocalHost)) ADD_FAILURE() << "no loopback port to listen on";
}

FakeBridge::~FakeBridge() {
  verify();
  for (const auto& [socket, peer] : m_peers) socket->disconnect(this);
}

std::string FakeBridge::baseURL() const {
  return "http://127.0.0.1:" + std::to_string(m_server.serverPort());
}

void FakeBridge::expect(std::string method, std::string target, Script script) {
  m_expected[{std::move(method), std::move(target)}].push_back(std::move(script));
}

void FakeBridge::always(std::string method, std::string target, Script script) {
  m_always[{std::move(method), std::move(target)}] = std::move(script);
}

int FakeBridge::count(std::string_view method, std::string_view target) const {
  const auto found = m_heads.find(Key(method, target));
  return found == m_heads.end() ? 0 : found->second;
}

void FakeBridge::verify() {
  for (const auto& [key, scripts] : std::exchange(m_expected, {})) {
    if (!scripts.empty()) ADD_FAILURE() << "never came: " << key.first << " " << key.second;
  }
}

void FakeBridge::accept() {
  while (QTcpSocket* socket = m_server.nextPendingConnection()) {
    ++m_connections;
    if (m_connectionsToDrop > 0) {
      --m_connectionsToDrop;
      end(socket, Script::Then::Close);
      continue;
    }
    m_peers[socket].number = m_connections;
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
      const auto peer = m_peers.find(socket);
      const bool streaming = peer != m_peers.end() && peer->second.streaming;
      m_peers.erase(socket);
      std::erase_if(m_silenced, [&](const auto& silenced) { return silenced.first == socket; });
      socket->deleteLater();
      if (streaming) emit streamEnded();
    });
  }
}

void FakeBridge::read(QTcpSocket* socket) {
  const auto found = m_peers.find(socket);
  if (found == m_peers.end()) return;
  Peer& peer = found->second;
  const QByteArray bytes = socket->readAll();
  peer.input.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  if (peer.streaming) {
    readStream(socket, peer);
    return;
  }
  while (m_peers.contains(socket) && takeRequest(socket, peer)) {
  }
}

void FakeBridge::readStream(QTcpSocket* socket, Peer& peer) {
  // A client sends control frames alone there, masked and short.
  constexpr std::size_t kHead = 6;
  while (peer.input.size() >= kHead) {
    const auto size = kHead + (static_cast<unsigned char>(peer.input[1]) & 0x7FU);
    if (peer.input.size() < size) return;
    const bool isPing = peer.input.front() == '\x89';
    peer.input.erase(0, size);
    if (!isPing) continue;
    ++m_pings;
    if (m_answersPings) socket->write(QByteArray("\x8A\0", 2));
  }
}

bool FakeBridge::takeRequest(QTcpSocket* socket, Peer& peer) {
  const std::size_t headEnd = peer.input.find(kHeadEnd);
  if (headEnd == std::string::npos || peer.answeredEarly) return false;
  SeenRequest request = parseHead(std::string_view(peer.input).substr(0, headEnd));
  request.connection = peer.number;
  const Key key(request.method, request.target);
  const auto waiting = m_expected.find(key);
  const bool early = waiting != m_expected.end() && !waiting->second.empty() && waiting->second.front().early;
  const std::size_t bodySize = std::stoull(request.header("Content-Length").value_or("0"));
  const std::size_t whole = headEnd + kHeadEnd.size() + bodySize;
  if (!early && peer.input.size() < whole) return false;
  request.body = peer.input.substr(headEnd + kHeadEnd.size(), bodySize);
  peer.input.erase(0, std::min(whole, peer.input.size()));
  peer.answeredEarly = early;
  ++m_heads[key];
  m_requests.push_back(request);
  perform(socket, request, scriptFor(request));
  emit requestSeen();
  return true;
}

Script FakeBridge::scriptFor(const SeenRequest& request) {
  const Key key(request.method, request.target);
  if (const auto found = m_expected.find(key); found != m_expected.end() && !found->second.empty()) {
    Script script = found->second.front();
    found->second.erase(found->second.begin());
    return script;
  }
  if (const auto found = m_always.find(key); found != m_always.end()) return found->second;
  if (m_world) return m_world(request);
  ADD_FAILURE() << "unexpected request: " << request.method << " " << request.target;
  return Script::json(500, R"({"error":"unexpected request"})");
}

void FakeBridge::perform(QTcpSocket* socket, const SeenRequest& request, const Script& script) {
  std::string bytes = script.bytes;
  if (bytes.empty() && !script.stream) m_silenced.emplace_back(socket, request);
  if (script.stream) {
    m_peers[socket].streaming = true;
    bytes += upgradeAnswer(request);
    for (const std::string& message : *script.stream) bytes += frame(1, message);
  }
  if (script.cutAfter) {
    bytes.resize(std::min(bytes.size(), *script.cutAfter));
    socket->write(bytesOf(bytes));
    socket->flush();  // a reset would throw away what is not sent yet
    end(socket, script.then);
    return;
  }
  socket->write(bytesOf(bytes));
  if (script.then != Script::Then::KeepOpen) end(socket, script.then);
}

void FakeBridge::answer(std::string_view method, std::string_view target, const Script& script) {
  const auto silenced = std::ranges::find_if(
      m_silenced, [&](const auto& each) { return each.second.method == method && each.second.target == target; });
  if (silenced == m_silenced.end()) {
    ADD_FAILURE() << "nobody waits for: " << method << " " << target;
    return;
  }
  const auto [socket, request] = std::move(*silenced);
  m_silenced.erase(silenced);
  perform(socket, request, script);
}

void FakeBridge::end(QTcpSocket* socket, Script::Then how) {
  if (how == Script::Then::Reset) {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket->abort();
    return;
  }
  socket->disconnectFromHost();
}

void FakeBridge::sendFrame(char opcode, std::string_view payload) {
  injectRaw(frame(opcode, payload));
}

void FakeBridge::inject(std::string_view text) {
  sendFrame(1, text);
}

std::string FakeBridge::frameOf(std::string_view text) {
  return frame(1, text);
}

void FakeBridge::injectCut(std::string_view text, std::size_t bytes, Script::Then how) {
  injectRaw(frame(1, text).substr(0, bytes));
  for (const auto& [socket, peer] : m_peers) socket->flush();
  closeStreams(how);
}

void FakeBridge::injectBinary(std::string_view bytes) {
  sendFrame(2, bytes);
}

void FakeBridge::injectRaw(std::string_view bytes) {
  for (const auto& [socket, peer] : m_peers) {
    if (peer.streaming) socket->write(bytesOf(bytes));
  }
}

void FakeBridge::sendTo(int connection, std::string_view bytes) {
  for (const auto& [socket, peer] : m_peers) {
    if (peer.number == connection) socket->write(bytesOf(bytes));
  }
}

void FakeBridge::closeStreams(Script::Then how) {
  std::vector<QTcpSocket*> streams;
  for (const auto& [socket, peer] : m_peers) {
    if (peer.streaming) streams.push_back(socket);
  }
  for (QTcpSocket* socket : streams) end(socket, how);
}

int FakeBridge::openStreams() const {
  return static_cast<int>(std::ranges::count_if(m_peers, [](const auto& entry) { return entry.second.streaming; }));
}

}  // namespace varnel::support
