// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/bridge.h"

#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/use_awaitable.hpp>

#include "host/service/log.h"

namespace varnel::service {

namespace asio = boost::asio;

namespace {

constexpr double kSeenSeconds = 60;

}  // namespace

Bridge::Bridge(const asio::any_io_executor& executor, store::Store& store, agent::Agent& agent, Clock time,
               Policy policy)
    : m_executor(executor),
      m_store(store),
      m_agent(agent),
      m_sweep(executor),
      clock(std::move(time)),
      events(executor, store.events, store.tracking, agent, clock),
      pairing(store.devices, clock),
      repeats(store.answers, clock),
      attachments(store.uploads, store.uploadFolder, clock),
      commands(agent, store.tracking, attachments, events, std::move(policy)),
      queue(executor,
            {.store = store.queue, .agent = agent, .commands = commands, .events = events, .attachments = attachments},
            clock),
      conversations(agent, store.tracking, queue),
      indexer(executor, store.search, agent),
      search(indexer, store.search) {}

asio::awaitable<std::expected<void, std::string>> Bridge::start() {
  const auto started = co_await m_agent.start([this](const agent::Change& change) {
    events.note(change);
    indexer.note(change);
    queue.note(change);
  });
  if (!started) co_return std::unexpected(started.error().text);
  // What the agent did while no bridge ran was told to nobody.
  if (m_store.events.head() > 0) events.note({.kind = agent::Change::Kind::Lost});
  asio::co_spawn(m_executor, events.run(), asio::detached);
  asio::co_spawn(m_executor, indexer.run(), asio::detached);
  asio::co_spawn(m_executor, queue.run(), asio::detached);
  asio::co_spawn(m_executor, sweepHourly(), asio::detached);
  co_return std::expected<void, std::string>();
}

void Bridge::stop() {
  m_stopped = true;
  m_sweep.cancel();
  events.stop();
  indexer.stop();
  queue.stop();
  m_agent.stop();
}

std::optional<store::Device> Bridge::deviceOf(std::string_view token) {
  auto device = m_store.devices.findByToken(store::digestOf(token));
  if (device && clock.wall() - device->lastSeenAt.value_or(0) > kSeenSeconds) {
    m_store.devices.markSeen(device->id, clock.wall());
  }
  return device;
}

bool Bridge::isPaired(const std::string& deviceId) const {
  const auto devices = m_store.devices.list();
  return std::ranges::find(devices, deviceId, &store::Device::id) != devices.end();
}

bool Bridge::revoke(const std::string& deviceId) {
  const bool known = m_store.devices.remove(deviceId);
  events.closeStreams(deviceId);
  return known;
}

asio::awaitable<void> Bridge::sweepHourly() {
  while (!m_stopped) {
    try {
      attachments.sweep();
    } catch (const std::exception& error) {
      log(std::string("old files could not be removed: ") + error.what());
    }
    m_sweep.expires_after(std::chrono::hours(1));
    co_await m_sweep.async_wait(asio::as_tuple(asio::use_awaitable));
  }
}

}  // namespace varnel::service
