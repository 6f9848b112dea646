// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTcpServer>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class QTcpSocket;

namespace varnel::support {

/// A request as it came in, body and all.
struct SeenRequest {
  std::string method;
  std::string target;  ///< path and query as they stood on the wire
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;
  int connection = 0;  ///< counts the connections of the bridge from 1

  /// Nothing when the header is missing; names compare without case.
  [[nodiscard]] std::optional<std::string> header(std::string_view name) const;
};

/// What the bridge does with a request: bytes as they go on the wire, then what becomes of the connection.
struct Script {
  enum class Then { KeepOpen, Close, Reset };
  std::string bytes;
  Then then = Then::KeepOpen;
  /// Acts on the head of the request, without waiting for its body.
  bool early = false;
  /// Set for an upgrade: messages that go out in one packet with it.
  std::optional<std::vector<std::string>> stream = std::nullopt;
  /// Set to end the connection, as `then` says, after so many bytes of all that.
  std::optional<std::size_t> cutAfter = std::nullopt;

  static Script json(int status, std::string_view body);
  static Script redirect(int status, std::string_view location);
  /// Announces the whole body and sends the first `sent` bytes of it.
  static Script shortBody(std::string_view body, std::size_t sent, Then then);
  static Script raw(std::string bytes, Then then = Then::Close);
  /// Takes the request and says nothing more.
  static Script silence();
  static Script drop(Then then = Then::Close);
  static Script acceptStream(std::vector<std::string> first = {});
};

/// A scripted bridge on a free loopback port. A request that no script waits for fails the test and is answered with
/// 500; so does a script whose request has not come when the bridge goes. Lives on the thread that makes it and works
/// in that thread's event loop.
class FakeBridge : public QObject {
  Q_OBJECT

 public:
  FakeBridge();
  ~FakeBridge() override;

  /// "http://127.0.0.1:PORT", without a slash at the end.
  [[nodiscard]] std::string baseURL() const;

  /// Answers one such request. Scripts for the same method and target are used in the order given.
  void expect(std::string method, std::string target, Script script);
  /// Answers any number of such requests, none too.
  void always(std::string method, std::string target, Script script);
  /// Answers what no script waits for, in place of failing.
  void answerBy(std::function<Script(const SeenRequest&)> world) { m_world = std::move(world); }
  /// Closes the next connections as soon as they are accepted.
  void dropNextConnections(int count) { m_connectionsToDrop = count; }

  [[nodiscard]] const std::vector<SeenRequest>& requests() const { return m_requests; }
  /// How often the head of such a request reached this bridge, complete or not.
  [[nodiscard]] int count(std::string_view method, std::string_view target) const;
  [[nodiscard]] int connections() const { return m_connections; }
  /// Fails the test when anything but the scripted requests came or one of those has not come yet.
  void verify();
  /// Sends bytes on one connection as they are, to go on with an answer that was left unfinished.
  void sendTo(int connection, std::string_view bytes);

  /// Answers the oldest such request that was met with silence, so that a test decides which answer comes first.
  void answer(std::string_view method, std::string_view target, const Script& script);

  /// Sends a message on every open stream.
  void inject(std::string_view text);
  /// The first bytes of it alone, and the end of every stream after them.
  void injectCut(std::string_view text, std::size_t bytes, Script::Then how);
  void injectBinary(std::string_view bytes);
  /// Sends bytes on every open stream as they are.
  void injectRaw(std::string_view bytes);
  /// From now on pings on the streams are not answered, as if the path were dead.
  void ignorePings() { m_answersPings = false; }
  [[nodiscard]] int pings() const { return m_pings; }
  void closeStreams(Script::Then how = Script::Then::Close);
  [[nodiscard]] int openStreams() const;
  [[nodiscard]] int openConnections() const { return static_cast<int>(m_peers.size()); }
  /// For runs so long that what was seen would fill the memory.
  void forgetRequests() { m_requests.clear(); }
  /// A text message as it goes on the wire.
  static std::string frameOf(std::string_view text);

 signals:
  void requestSeen();
  void streamEnded();

 private:
  struct Peer {
    int number = 0;
    std::string input;
    bool answeredEarly = false;
    bool streaming = false;
  };
  using Key = std::pair<std::string, std::string>;

  void accept();
  void readStream(QTcpSocket* socket, Peer& peer);
  void read(QTcpSocket* socket);
  bool takeRequest(QTcpSocket* socket, Peer& peer);
  void perform(QTcpSocket* socket, const SeenRequest& request, const Script& script);
  Script scriptFor(const SeenRequest& request);
  void sendFrame(char opcode, std::string_view payload);
  static void end(QTcpSocket* socket, Script::Then how);

  QTcpServer m_server;
  std::map<QTcpSocket*, Peer> m_peers;
  std::map<Key, std::vector<Script>> m_expected;
  std::map<Key, Script> m_always;
  std::function<Script(const SeenRequest&)> m_world;
  std::vector<SeenRequest> m_requests;
  std::vector<std::pair<QTcpSocket*, SeenRequest>> m_silenced;
  std::map<Key, int, std::less<>> m_heads;
  int m_connections = 0;
  int m_connectionsToDrop = 0;
  int m_pings = 0;
  bool m_answersPings = true;
};

}  // namespace varnel::support
