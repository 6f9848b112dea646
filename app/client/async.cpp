// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/async.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QMetaObject>
#include <QSocketNotifier>
#include <QThreadPool>
#include <QTimer>

namespace varnel::client {

namespace {

void resumeLater(std::coroutine_handle<> waiter) {
  QMetaObject::invokeMethod(qApp, [waiter] { waiter.resume(); }, Qt::QueuedConnection);
}

/// Opens a gate after a time that counts the device's sleep; QTimer's clock stands still then.
class BoottimeTimer {
 public:
  BoottimeTimer(std::chrono::milliseconds duration, Gate& gate)
      : m_descriptor(::timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {
    if (m_descriptor < 0) {  // out of descriptors: better a timer that pauses with the device than none
      m_fallback.setSingleShot(true);
      QObject::connect(&m_fallback, &QTimer::timeout, &m_fallback, [&gate] { gate.open(); });
      m_fallback.start(duration);
      return;
    }
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    itimerspec when{};
    when.it_value.tv_sec = seconds.count();
    when.it_value.tv_nsec = std::chrono::nanoseconds(duration - seconds).count();
    if (duration <= duration.zero()) when.it_value.tv_nsec = 1;  // zero would disarm it
    ::timerfd_settime(m_descriptor, 0, &when, nullptr);
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this, &gate] {
      m_notifier->setEnabled(false);
      gate.open();
    });
  }
  ~BoottimeTimer() {
    m_notifier.reset();
    if (m_descriptor >= 0) ::close(m_descriptor);
  }
  BoottimeTimer(const BoottimeTimer&) = delete;
  BoottimeTimer& operator=(const BoottimeTimer&) = delete;

 private:
  int m_descriptor;
  std::unique_ptr<QSocketNotifier> m_notifier;
  QTimer m_fallback;
};

}  // namespace

void Gate::open() {
  if (std::exchange(m_open, true)) return;
  if (m_waiter) resumeLater(std::exchange(m_waiter, {}));
}

void Gate::Awaiter::await_suspend(std::coroutine_handle<> waiter) {
  if (m_gate->m_open) {
    resumeLater(waiter);
  } else {
    m_gate->m_waiter = waiter;
  }
}

Task<Result<void>> sleepFor(std::chrono::milliseconds duration, std::stop_token stop) {
  Gate gate;
  BoottimeTimer timer(duration, gate);
  std::stop_callback onStop(stop, [&gate] { gate.open(); });
  co_await gate.wait();
  if (stop.stop_requested()) co_return std::unexpected(ClientError(Cancelled{}));
  co_return Result<void>();
}

void detail::runOnWorker(std::function<void()> work, std::function<void()> done) {
  // The application waits for the global pool before it goes, so it stands while a worker runs.
  QThreadPool::globalInstance()->start([work = std::move(work), done = std::move(done)] {
    work();
    QMetaObject::invokeMethod(qApp, done, Qt::QueuedConnection);
  });
}

}  // namespace varnel::client
