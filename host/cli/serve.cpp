// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <csignal>
#include <functional>
#include <iostream>

#include "core/base/url.h"
#include "host/agent/codex/codex_agent.h"
#include "host/agent/demo/demo_agent.h"
#include "host/cli/commands.h"
#include "host/cli/control_server.h"
#include "host/cli/listen_address.h"
#include "host/http/server.h"
#include "host/service/log.h"
#include "host/store/state_directory.h"

namespace varnel::cli {

namespace asio = boost::asio;

namespace {

/// What is still running after that is left behind.
constexpr std::chrono::seconds kShutdownTime{3};

struct Addresses {
  asio::ip::tcp::endpoint endpoint;
  std::optional<base::Url> advertised;
};

std::expected<Addresses, std::string> readAddresses(const ServeOptions& options) {
  Addresses addresses;
  const auto endpoint = parseListenAddress(options.listen);
  if (!endpoint) return std::unexpected(endpoint.error());
  addresses.endpoint = *endpoint;
  if (options.baseURL) {
    addresses.advertised = base::Url::parse(*options.baseURL);
    const auto parts = addresses.advertised ? addresses.advertised->parts() : base::Url::Parts{};
    const bool isHttp = parts.scheme == "http" || parts.scheme == "https";
    const auto authority = parts.authority.value_or("");
    const bool hasMore = authority.contains('@') || parts.query || parts.fragment;
    if (!isHttp || authority.empty() || hasMore) {
      return std::unexpected("\"" + *options.baseURL + "\" is not a base URL, such as http://my-host:8737.");
    }
  }
  if (!endpoint->address().is_loopback() && !options.allowRemote) {
    return std::unexpected("Listening on " + endpoint->address().to_string() +
                           " would let other machines in; say --allow-remote if that is wanted.");
  }
  if (endpoint->address().is_unspecified() && !addresses.advertised) {
    return std::unexpected("Listening on every address needs --base-url, so that phones know which one to use.");
  }
  return addresses;
}

http::AllowedHosts allowedHosts(const Addresses& addresses) {
  http::AllowedHosts hosts;
  const auto address = addresses.endpoint.address().to_string();
  if (!addresses.endpoint.address().is_unspecified()) {
    hosts.add(addresses.endpoint.address().is_v6() ? "[" + address + "]" : address);
  }
  if (addresses.advertised) {
    const auto authority = *addresses.advertised->parts().authority;
    hosts.add(authority.substr(0, authority.find(':', authority.starts_with('[') ? authority.find(']') : 0)));
  }
  return hosts;
}

/// The agent that was asked for, or the one that there is. The reason when there is none of that name.
std::expected<std::string, std::string> chooseAgent(const ServeOptions& options) {
  const bool isInstalled = agent::codex::findCommand(options.agentCommand).has_value();
  if (options.agent == "demo" || (options.agent == "codex" && isInstalled)) return options.agent;
  if (options.agent == "codex") {
    return std::unexpected("There is no program \"" + options.agentCommand +
                           "\"; install Codex or name its program with --agent-command.");
  }
  if (!options.agent.empty()) {
    return std::unexpected("There is no agent \"" + options.agent + "\"; this varnel knows codex and demo.");
  }
  if (isInstalled) return "codex";
  std::cerr << "varnel: Codex is not installed; the demo agent plays its part.\n" << std::flush;
  return "demo";
}

std::unique_ptr<agent::Agent> makeAgent(const asio::any_io_executor& executor, store::Store& store,
                                        const ServeOptions& options) {
  if (options.agent == "demo") return std::make_unique<agent::demo::DemoAgent>(executor, options.demo);
  return std::make_unique<agent::codex::CodexAgent>(
      executor, store.agentMemory,
      agent::codex::CodexOptions{
          .installation = {.command = agent::codex::findCommand(options.agentCommand).value_or(options.agentCommand),
                           .home = agent::codex::agentHome(),
                           .log = options.stateDirectory / "agent.log"},
          .version = VARNEL_VERSION,
          .projects = options.projects,
          .now = {},
          .log = [](const std::string& line) { service::log(line); }});
}

/// Every part of a running bridge, in the order in which they need each other; destruction is the reverse. One thread.
class Serving {
 public:
  Serving(store::StateDirectory directory, std::unique_ptr<store::Store> store, const ServeOptions& options,
          const Addresses& addresses)
      : m_directory(std::move(directory)),
        m_store(std::move(store)),
        m_agent(makeAgent(m_io.get_executor(), *m_store, options)),
        m_bridge(m_io.get_executor(), *m_store, *m_agent, service::Clock::system(),
                 {.forbidden = {options.forbidden.begin(), options.forbidden.end()}}),
        m_server(m_io.get_executor(), m_bridge, allowedHosts(addresses)),
        m_addresses(addresses) {}

  int run() {
    const auto bound = m_server.listen(m_addresses.endpoint);
    if (!bound) return fail("Cannot listen on " + urlOf(m_addresses.endpoint) + ": " + bound.error() + ".");
    m_control.emplace(m_io.get_executor(), m_bridge, m_store->devices,
                      m_addresses.advertised ? m_addresses.advertised->text() : urlOf(*bound));
    const auto controlled = m_control->listen(m_directory.controlSocket());
    if (!controlled) return fail("Cannot be controlled: " + controlled.error() + ".");
    m_signals.async_wait([this](boost::system::error_code error, int) {
      if (!error) stop();
    });
    asio::co_spawn(m_io, begin(urlOf(*bound)), endsWhenFailed());
    m_io.run();
    // What has been told to end ends now, or never.
    m_io.restart();
    m_io.run_for(kShutdownTime);
    return m_status;
  }

 private:
  asio::awaitable<void> begin(std::string url) {
    const auto started = co_await m_bridge.start();
    if (!started) {
      m_status = fail("The agent does not start: " + started.error());
      stop();
      co_return;
    }
    asio::co_spawn(m_io, m_server.run(), endsWhenFailed());
    asio::co_spawn(m_io, m_control->run(), endsWhenFailed());
    std::cout << "listening on " << url << '\n' << std::flush;
  }

  /// For what the bridge cannot go on without.
  std::function<void(std::exception_ptr)> endsWhenFailed() {
    return [this](const std::exception_ptr& failure) {
      if (!failure) return;
      try {
        std::rethrow_exception(failure);
      } catch (const std::exception& error) {
        m_status = fail(std::string("The bridge cannot go on: ") + error.what() + ".");
      }
      stop();
    };
  }

  void stop() {
    m_server.stop();
    m_control->stop();
    m_bridge.stop();
    m_io.stop();
  }

  asio::io_context m_io{1};
  store::StateDirectory m_directory;
  std::unique_ptr<store::Store> m_store;
  std::unique_ptr<agent::Agent> m_agent;
  service::Bridge m_bridge;
  http::Server m_server;
  std::optional<ControlServer> m_control;
  Addresses m_addresses;
  asio::signal_set m_signals{m_io, SIGINT, SIGTERM};
  int m_status = 0;
};

}  // namespace

int serve(ServeOptions options) {
  std::signal(SIGPIPE, SIG_IGN);
  const auto agent = chooseAgent(options);
  if (!agent) return fail(agent.error());
  options.agent = *agent;
  const auto addresses = readAddresses(options);
  if (!addresses) return fail(addresses.error());
  auto directory = store::StateDirectory::take(options.stateDirectory);
  if (!directory) return fail("The state directory cannot be used: " + directory.error() + ".");
  auto opened = store::Store::open(directory->database(), directory->uploads());
  if (!opened) return fail("The state cannot be read: " + opened.error() + ".");
  return Serving(std::move(*directory), std::move(*opened), options, *addresses).run();
}

}  // namespace varnel::cli
