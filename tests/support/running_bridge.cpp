// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/support/running_bridge.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/this_coro.hpp>
#include <stdexcept>

namespace varnel::support {

namespace asio = boost::asio;

namespace {

asio::awaitable<void> begin(service::Bridge& bridge, http::Server& server, std::promise<void>& ready) {
  co_await bridge.start();
  asio::co_spawn(co_await asio::this_coro::executor, server.run(), asio::detached);
  ready.set_value();
}

}  // namespace

RunningBridge::RunningBridge(http::Limits limits, MakeAgent makeAgent, service::Policy policy) {
  auto store = store::Store::open(":memory:", m_uploads.path());
  if (!store) throw std::runtime_error(store.error());
  m_store = std::move(*store);
  m_agent = makeAgent ? makeAgent(m_io.get_executor()) : std::make_unique<FakeAgent>(m_io.get_executor());
  if (auto* fake = dynamic_cast<FakeAgent*>(m_agent.get())) m_fake = fake;
  const auto system = service::Clock::system();
  const service::Clock clock{
      .wall = [this, system] { return system.wall() + static_cast<double>(m_ahead) / 1000; },
      .elapsed = [this, system] { return system.elapsed() + std::chrono::milliseconds(m_ahead); }};
  m_bridge = std::make_unique<service::Bridge>(m_io.get_executor(), *m_store, *m_agent, clock, std::move(policy));
  m_server = std::make_unique<http::Server>(m_io.get_executor(), *m_bridge, http::AllowedHosts(), limits);
  const auto bound = m_server->listen({asio::ip::make_address("127.0.0.1"), 0});
  if (!bound) throw std::runtime_error(bound.error());
  m_port = bound->port();
  std::promise<void> ready;
  asio::co_spawn(m_io, begin(*m_bridge, *m_server, ready), asio::detached);
  m_thread = std::thread([this] { m_io.run(); });
  ready.get_future().wait();
}

RunningBridge::~RunningBridge() {
  asio::post(m_io, [this] {
    m_server->stop();
    m_bridge->stop();
    m_io.stop();
  });
  m_thread.join();
  m_guard.reset();
  m_io.restart();
  m_io.run_for(std::chrono::seconds(3));
}

std::string RunningBridge::pair(const std::string& name) {
  return run([&](Parts parts) {
    const auto offer = parts.bridge.pairing.offer({});
    return parts.bridge.pairing.claim({.secret = offer.secret, .deviceName = name}).value().token;
  });
}

bool RunningBridge::eventually(const std::function<bool(Parts)>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (std::chrono::steady_clock::now() < end) {
    if (run(condition)) return true;
    std::this_thread::yield();
  }
  return false;
}

}  // namespace varnel::support
