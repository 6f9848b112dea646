// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/reload_loopback.h"

#include <QCoroTask>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <vector>

#include "app/client/pipeline.h"
#include "bench/json_peers.h"
#include "bench/loopback_bridge.h"
#include "bench/reload_ours.h"
#include "core/live/operations.h"

namespace varnel::bench {

namespace {

std::string fetchByUs(const wire::PairingCredentials& bridge) {
  constexpr auto kPatience = std::chrono::seconds(30);
  constexpr std::int64_t kMostBytes = 1 << 30;
  const client::CallContext context{
      .limits = {.timeout = kPatience, .answerLimit = kMostBytes}, .decodeHereLimit = kMostBytes, .clientGone = {}};
  auto body = QCoro::waitFor(client::fetch(
      context, {.request = live::buildRequest(live::operations::session("s"), bridge, "k"), .file = {}}, {}));
  if (!body) throw std::runtime_error("the answer did not arrive");
  return std::move(*body).text().value();
}

QByteArray fetchByQt(QNetworkAccessManager& network, const QUrl& url) {
  const std::unique_ptr<QNetworkReply> reply(network.get(QNetworkRequest(url)));
  QEventLoop loop;
  QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
  loop.exec();
  if (reply->error() != QNetworkReply::NoError) throw std::runtime_error("the answer did not arrive at Qt");
  return reply->readAll();
}

struct Spent {
  std::vector<double> wall;
  std::vector<double> cpu;
};

/// What the work takes of this process, the bridge left out: how long the two wait for each other depends on what else
/// the machine does.
void measure(Spent& spent, const LoopbackBridge& bridge, auto work) {
  const auto cpuSeconds = [&bridge] {
    timespec process{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &process);
    return static_cast<double>(process.tv_sec) + static_cast<double>(process.tv_nsec) * 1e-9 - bridge.cpuSeconds();
  };
  const double before = cpuSeconds();
  QElapsedTimer clock;
  clock.start();
  work();
  spent.wall.push_back(static_cast<double>(clock.nsecsElapsed()) * 1e-9);
  spent.cpu.push_back(cpuSeconds() - before);
}

double median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

}  // namespace

double loopbackRatio(const std::string& before, const std::string& after) {
  const std::vector bodies = {QByteArray::fromStdString(before), QByteArray::fromStdString(after)};
  const LoopbackBridge oursBridge(bodies);
  const LoopbackBridge qtBridge(bodies);
  const wire::PairingCredentials credentials{base::Url::parse(oursBridge.baseURL()).value(), "d", "t"};
  const QUrl url(QString::fromStdString(qtBridge.baseURL() + "/v1/sessions/s"));

  Conversation ours;
  std::vector<QtItem> items;
  QNetworkAccessManager network;
  const auto reloadByUs = [&] { ours.reload(fetchByUs(credentials)); };
  const auto reloadByQt = [&] {
    const QByteArray body = fetchByQt(network, url);
    auto fresh = detailByQt({body.constData(), static_cast<std::size_t>(body.size())}).items;
    if (fresh != items) items = std::move(fresh);
  };
  constexpr int kRounds = 31;
  Spent mine;
  Spent theirs;
  reloadByUs();
  reloadByQt();
  for (int round = 0; round < kRounds; ++round) {
    measure(mine, oursBridge, reloadByUs);
    measure(theirs, qtBridge, reloadByQt);
    if (ours.items().size() != items.size()) throw std::runtime_error("the two clients see different answers");
  }
  std::printf("\nfetched over loopback: ours %.2f ms (%.2f ms of CPU), plain Qt %.2f ms (%.2f ms of CPU)\n",
              median(mine.wall) * 1e3, median(mine.cpu) * 1e3, median(theirs.wall) * 1e3, median(theirs.cpu) * 1e3);
  return median(theirs.cpu) / median(mine.cpu);
}

}  // namespace varnel::bench
