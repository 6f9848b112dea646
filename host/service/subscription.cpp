// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/subscription.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <iterator>
#include <utility>

namespace varnel::service {

namespace asio = boost::asio;

Subscription::Subscription(const asio::any_io_executor& executor, std::string deviceId, std::vector<std::string> first)
    : m_deviceId(std::move(deviceId)),
      m_waiting(std::make_move_iterator(first.begin()), std::make_move_iterator(first.end())),
      m_room(first.size() + kWaiting),
      m_signal(executor, asio::steady_timer::time_point::max()) {}

asio::awaitable<std::optional<std::string>> Subscription::next(std::shared_ptr<Subscription> self) {
  while (!self->m_closed && self->m_waiting.empty()) {
    co_await self->m_signal.async_wait(asio::as_tuple(asio::use_awaitable));
  }
  if (self->m_closed) co_return std::nullopt;
  std::string event = std::move(self->m_waiting.front());
  self->m_waiting.pop_front();
  co_return event;
}

void Subscription::push(std::string event) {
  if (m_closed) return;
  if (m_waiting.size() >= m_room) {
    close();
    return;
  }
  m_waiting.push_back(std::move(event));
  m_signal.cancel();
}

void Subscription::close() {
  m_closed = true;
  m_waiting.clear();
  m_signal.cancel();
  if (const auto told = std::exchange(m_onClose, {})) told();
}

}  // namespace varnel::service
