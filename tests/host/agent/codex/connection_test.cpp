// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// The connection to the agent's server, with a server that says what the test wants.
#include "host/agent/codex/connection.h"

#include <gmock/gmock.h>

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket/stream.hpp>

#include "core/json/text.h"
#include "host/agent/codex/codex_agent.h"
#include "host/agent/codex/json_access.h"
#include "host/store/store.h"
#include "tests/support/temporary_directory.h"

namespace varnel::agent::codex {
namespace {

namespace asio = boost::asio;
namespace websocket = boost::beast::websocket;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Object = JSONValue::Object;
constexpr auto kAwait = asio::as_tuple(asio::use_awaitable);

class ConnectionTest : public ::testing::Test {
 protected:
  using Socket = websocket::stream<asio::local::stream_protocol::socket>;

  /// Listens where the agent's server would; each message is answered with what `reply` makes of it.
  void listen() {
    const auto path = installation.socket();
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::remove(path);
    m_acceptor.emplace(io, asio::local::stream_protocol::endpoint(path.string()));
    asio::co_spawn(io, accept(), asio::detached);
  }
  void dropAll() {
    for (const auto& socket : std::exchange(m_sockets, {})) boost::beast::get_lowest_layer(*socket).close();
  }
  void tell(const std::string& text) {
    asio::co_spawn(
        io,
        [](std::shared_ptr<Socket> socket, std::string message) -> asio::awaitable<void> {
          co_await socket->async_write(asio::buffer(message), kAwait);
        }(m_sockets.back(), text),
        asio::detached);
  }
  template <class T>
  T run(asio::awaitable<T> task) {
    std::optional<T> result;
    asio::co_spawn(io, std::move(task), [&](const std::exception_ptr& error, T value) {
      if (error) std::rethrow_exception(error);
      result.emplace(std::move(value));
    });
    runUntil([&] { return result.has_value(); });
    return std::move(*result);
  }
  void runUntil(const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (!holds()) {
      if (io.stopped()) io.restart();
      io.run_one_until(end);
      if (std::chrono::steady_clock::now() >= end) throw std::runtime_error("waited in vain");
    }
  }

  varnel::testing::TemporaryDirectory folder;
  Installation installation{.command = "/bin/false", .home = folder.path() / "home", .log = {}};
  std::vector<JSONValue> heard;
  std::function<std::vector<std::string>(const JSONValue&)> reply = [](const JSONValue& message) {
    const auto id = json::write(memberOf(message, "id")).value();
    return id == "null" ? std::vector<std::string>() : std::vector<std::string>{R"({"id":)" + id + R"(,"result":{}})"};
  };
  asio::io_context io;

 private:
  asio::awaitable<void> accept() {
    for (;;) {
      auto [error, plain] = co_await m_acceptor->async_accept(kAwait);
      if (error) co_return;
      const auto socket = std::make_shared<Socket>(std::move(plain));
      m_sockets.push_back(socket);
      asio::co_spawn(io, serve(socket), asio::detached);
    }
  }
  asio::awaitable<void> serve(std::shared_ptr<Socket> socket) {
    co_await socket->async_accept(kAwait);
    for (boost::beast::flat_buffer buffer;; buffer.clear()) {
      const auto [error, size] = co_await socket->async_read(buffer, kAwait);
      if (error) co_return;
      heard.push_back(json::parse(boost::beast::buffers_to_string(buffer.data())).value());
      for (const auto& text : reply(heard.back())) co_await socket->async_write(asio::buffer(text), kAwait);
    }
  }

  std::optional<asio::local::stream_protocol::acceptor> m_acceptor;
  std::vector<std::shared_ptr<Socket>> m_sockets;
};

TEST_F(ConnectionTest, answersRefusalsSilenceAndLossAreToldApart) {
  EXPECT_FALSE(run(Connection::open(io.get_executor(), installation.socket()))) << "nobody listens";
  listen();
  reply = [](const JSONValue& message) -> std::vector<std::string> {
    const auto method = textOf(message, "method");
    const auto id = json::write(memberOf(message, "id")).value();
    if (method == "good")
      return {"no JSON", R"({"method":"between","params":{"n":1}})", R"({"id":)" + id + R"(,"result":{"a":2}})"};
    if (method == "bad") return {R"({"id":)" + id + R"(,"error":{"code":-32600,"message":"thread not found: x"}})"};
    return {};
  };
  const auto connection = run(Connection::open(io.get_executor(), installation.socket())).value();
  std::vector<std::string> notified;
  std::vector<std::string> logged;
  int closed = 0;
  connection->listen({.notified = [&](const auto& method, const auto&) { notified.push_back(method); },
                      .asked = {},
                      .closed = [&] { ++closed; },
                      .log = [&](const auto& line) { logged.push_back(line); }});
  EXPECT_EQ(run(connection->call("good", Object{})).value(), JSONValue(Object{{"a", 2}}));
  EXPECT_THAT(notified, ElementsAre("between"));
  EXPECT_THAT(logged, ElementsAre(HasSubstr("no JSON")));
  const auto refused = run(connection->call("bad", Object{}));
  EXPECT_EQ(failureOf(refused.error()).kind, AgentError::Kind::NotFound);
  EXPECT_EQ(run(connection->call("silent", Object{}, 50ms)).error().kind, RpcError::Kind::TimedOut);
  std::optional<RpcError::Kind> lost;
  asio::co_spawn(io, connection->call("silent", Object{}),
                 [&](const std::exception_ptr&, Rpc<JSONValue> answer) { lost = answer.error().kind; });
  runUntil([&] { return heard.size() == 4; });
  dropAll();
  runUntil([&] { return lost.has_value(); });
  EXPECT_EQ(*lost, RpcError::Kind::Lost);
  EXPECT_EQ(closed, 1);
  EXPECT_FALSE(connection->isOpen());
  EXPECT_EQ(run(connection->call("good", Object{})).error().kind, RpcError::Kind::Lost);
}

TEST_F(ConnectionTest, theAgentRefusesWhatNobodyCanAnswerAndComesBack) {
  const auto store = store::Store::open(":memory:", folder.path()).value();
  std::vector<Change::Kind> changes;
  CodexAgent agent(io.get_executor(), store->agentMemory,
                   {.installation = installation, .version = "1", .projects = {}, .now = {}, .log = {}});
  const auto note = [&](const Change& change) { changes.push_back(change.kind); };
  listen();
  ASSERT_TRUE(run(agent.start(note)));
  EXPECT_EQ(textOf(heard[0], "method"), "initialize");
  EXPECT_TRUE(flagOf(memberOf(memberOf(heard[0], "params"), "capabilities"), "experimentalApi"));
  tell(R"({"id":5,"method":"item/tool/call","params":{"threadId":"t"}})");
  const auto refusesIt = [&] {
    return std::ranges::any_of(heard, [](const auto& message) {
      return memberOf(message, "id") == JSONValue(5) && message.member("error") != nullptr;
    });
  };
  runUntil(refusesIt);

  const auto before = heard.size();
  dropAll();
  runUntil([&] { return std::ranges::count(changes, Change::Kind::Lost) == 2; });
  EXPECT_EQ(textOf(heard.at(before), "method"), "initialize") << "it does not come back";
  agent.stop();
}

}  // namespace
}  // namespace varnel::agent::codex
