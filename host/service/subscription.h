// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/steady_timer.hpp>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnel::service {

/// The events on their way to one phone. Filled by the bridge, emptied by one socket; a phone that does not keep up is
/// cut off and resumes where it was.
class Subscription {
 public:
  /// Events that wait for a socket at most, beside those that it begins with.
  static constexpr std::size_t kWaiting = 4096;

  /// The backlog or the snapshot comes first, however long it is.
  Subscription(const boost::asio::any_io_executor& executor, std::string deviceId, std::vector<std::string> first);

  /// The next event's text, when there is one; nothing when the stream is over. One caller at a time.
  static boost::asio::awaitable<std::optional<std::string>> next(std::shared_ptr<Subscription> self);

  void push(std::string event);
  /// Ends the stream at once; what waits is dropped.
  void close();
  /// Called once, by the first `close` from now on.
  void onClose(std::function<void()> told) { m_onClose = std::move(told); }

  [[nodiscard]] bool isClosed() const { return m_closed; }
  [[nodiscard]] const std::string& deviceId() const { return m_deviceId; }

 private:
  std::string m_deviceId;
  std::deque<std::string> m_waiting;
  std::size_t m_room;                  ///< events that may wait, with those of the beginning
  boost::asio::steady_timer m_signal;  ///< cancelled when there is something new
  std::function<void()> m_onClose;
  bool m_closed = false;
};

}  // namespace varnel::service
