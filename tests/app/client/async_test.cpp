// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/async.h"

#include <QElapsedTimer>
#include <QThread>

#include "tests/app/client/client_fixture.h"

namespace varnel::client {
namespace {

TEST(Sleep, LastsAsLongAsItSays) {
  for (const auto duration : {0ms, 1ms, 120ms, 1100ms}) {
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(await(sleepFor(duration)));
    EXPECT_GE(timer.elapsed(), duration.count());
    EXPECT_LT(timer.elapsed(), duration.count() + 900);
  }
}

TEST(Sleep, EndsWhenStopped) {
  std::stop_source stop;
  auto task = sleepFor(1h, stop.get_token());
  support::spinFor(5ms);
  stop.request_stop();
  EXPECT_FALSE(task.isReady());
  EXPECT_EQ(errorOf(await(std::move(task))), ClientError(Cancelled{}));
  EXPECT_EQ(errorOf(await(sleepFor(1h, stop.get_token()))), ClientError(Cancelled{}));
}

TEST(Worker, RunsElsewhereAndAnswersHere) {
  const QThread* here = QThread::currentThread();
  const auto result = await(onWorker([here] { return QThread::currentThread() != here; }, {}));
  EXPECT_EQ(result, true);
  EXPECT_EQ(QThread::currentThread(), here);
}

TEST(Worker, StoppingEndsTheWaitBeforeTheWork) {
  std::atomic<bool> finish = false;
  std::atomic<bool> finished = false;
  std::stop_source stop;
  auto task = onWorker(
      [&] {
        while (!finish) QThread::msleep(1);
        finished = true;
        return 1;
      },
      stop.get_token());
  stop.request_stop();
  EXPECT_EQ(errorOf(await(std::move(task))), ClientError(Cancelled{}));
  EXPECT_FALSE(finished);
  finish = true;
  EXPECT_TRUE(spinUntil([&] { return finished.load(); }));
}

TEST(UserText, OfEachFailure) {
  const std::vector<std::pair<ClientError, std::string>> cases = {
      {APIError{APIError::Kind::Server, 418, "Short and stout."}, "Short and stout."},
      {APIError{APIError::Kind::NotPaired, 0, {}}, "This iPhone is not paired."},
      {APIError{APIError::Kind::InvalidResponse, 0, {}}, "The bridge returned an invalid response."},
      {TransportError{TransportError::Kind::Failed, "Connection refused"}, "Connection refused"},
      {json::DecodeError{"sessions[3].state", "unknown value \"x\""}, "sessions[3].state: unknown value \"x\""},
      {Cancelled{}, ""},
  };
  for (const auto& [error, text] : cases) EXPECT_EQ(userText(error), text);
}

}  // namespace
}  // namespace varnel::client
