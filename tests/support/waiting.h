// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QCoroTask>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <chrono>
#include <utility>

namespace varnel::support {

/// Runs the event loop until `holds` or the time is over; says which.
template <class Predicate>
bool spinUntil(Predicate holds, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
  const QDeadlineTimer deadline(limit);
  while (!holds() && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  return holds();
}

/// Runs the event loop for a while, to see that something does not happen.
inline void spinFor(std::chrono::milliseconds duration) {
  spinUntil([] { return false; }, duration);
}

/// Runs the event loop until a task has ended. A task that never ends is ended by the test's time-out.
template <class T>
T await(QCoro::Task<T> task) {
  return QCoro::waitFor(std::move(task));
}

}  // namespace varnel::support
