// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/deadline.h"

namespace varnel::http {

void Deadline::set(std::chrono::milliseconds time, std::shared_ptr<void> owner) {
  m_passed = false;
  m_timer.expires_after(time);
  // A wait that has ended but not been told yet belongs to an earlier round and must not cut this one.
  const unsigned round = ++m_round;
  m_timer.async_wait([this, round, owner = std::move(owner)](boost::system::error_code error) {
    if (error || round != m_round) return;
    m_passed = true;
    boost::system::error_code ignored;
    m_socket.cancel(ignored);
  });
}

void Deadline::clear() {
  ++m_round;
  m_timer.cancel();
}

}  // namespace varnel::http
