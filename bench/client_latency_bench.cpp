// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdio>
#include <memory>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include "app/client/api_client.h"
#include "app/client/async.h"
#include "bench/loopback_bridge.h"

/// How long the main thread is held while a 20 MB conversation arrives and is decoded: a timer ticks every
/// millisecond, and the longest time between two turns of the event loop is what a finger would feel. The bridge is on
/// a thread of its own. Exit status 1 when the time is beyond the goal.
namespace varnel {
namespace {

constexpr double kGoalMilliseconds = 8;
constexpr std::size_t kBytes = 20'000'000;

/// A conversation as long as wanted, with tool details as the agent's look.
QByteArray conversation() {
  QByteArray body = R"({"pendingRequests":[],"items":[)";
  for (int i = 0; static_cast<std::size_t>(body.size()) < kBytes; ++i) {
    if (i > 0) body += ',';
    body += R"({"id":"item-)" + QByteArray::number(i) + R"(","type":"commandExecution","timestamp":1700000000.25,)" +
            R"("title":"ls -la","text":")" + QByteArray(600, 'x') +
            R"(","detail":{"command":["ls","-la"],"exitCode":0,)" + R"("output":")" + QByteArray(300, 'y') +
            R"("},"status":"completed"})";
  }
  return body + "]}";
}

/// The longest time between two turns of this thread's event loop.
class Pulse {
 public:
  Pulse() {
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
      m_longest = std::max(m_longest, m_since.nsecsElapsed());
      m_since.start();
    });
    m_timer.setTimerType(Qt::PreciseTimer);
    m_since.start();
    m_timer.start(1);
  }
  [[nodiscard]] double longestMilliseconds() const { return static_cast<double>(m_longest) / 1e6; }

 private:
  QTimer m_timer;
  QElapsedTimer m_since;
  qint64 m_longest = 0;
};

struct Round {
  double gap = 0;
  double total = 0;
  std::size_t items = 0;
};

client::Task<Round> load(std::shared_ptr<client::APIClient> api) {
  Round round;
  QElapsedTimer clock;
  clock.start();
  const Pulse pulse;
  auto detail = co_await api->session("s");
  round.total = static_cast<double>(clock.nsecsElapsed()) / 1e6;
  if (detail && detail->items && *detail->items) round.items = (*detail->items)->size();
  co_await client::sleepFor(std::chrono::milliseconds(20));  // lets the last gap be seen
  round.gap = pulse.longestMilliseconds();
  co_return round;
}

int measure() {
  const bench::LoopbackBridge bridge({conversation()});
  const auto api = std::make_shared<client::APIClient>(
      wire::PairingCredentials{base::Url::parse(bridge.baseURL()).value(), "d", "t"});
  double worst = 0;
  for (int i = 0; i < 10; ++i) {
    const Round round = QCoro::waitFor(load(api));
    if (round.items == 0) {
      std::fprintf(stderr, "the conversation did not arrive\n");
      return 1;
    }
    std::printf("round %d: %zu items, %.0f ms until decoded, longest main-thread gap %.2f ms\n", i, round.items,
                round.total, round.gap);
    worst = std::max(worst, round.gap);
  }
  std::printf("longest main-thread gap of all rounds: %.2f ms (goal: %.0f ms)\n", worst, kGoalMilliseconds);
  return worst <= kGoalMilliseconds ? 0 : 1;
}

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  return varnel::measure();
}
