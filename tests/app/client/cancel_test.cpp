// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <QThreadPool>
#include <memory>

#include "tests/app/client/client_fixture.h"

/// Calls that are stopped at each point where they wait, by their token or because their client is gone.
namespace varnel::client {
namespace {

std::string bigEnvelope() {
  std::string body = R"({"sessions":[)";
  for (int i = 0; i < 40'000; ++i) {
    body += (i ? "," : "") + std::string(R"({"id":"i)") + std::to_string(i) +
            R"(","project":"p","active":false,"state":"done","latestCommentary":"","updatedAt":1,"pinned":false})";
  }
  return body + "]}";
}

enum class By { Token, ClientGone };

class Cancel : public testing::TestWithParam<By> {
 protected:
  FakeBridge bridge;
  std::unique_ptr<APIClient> client = std::make_unique<APIClient>(credentialsFor(bridge.baseURL()));
  std::stop_source stop;

  void SetUp() override { QThreadPool::globalInstance()->waitForDone(); }  // decoding that an earlier test gave up
  void end() {
    if (GetParam() == By::Token) {
      stop.request_stop();
    } else {
      client.reset();
    }
  }
  template <class T>
  void expectCancelled(Task<Result<T>> task) {
    EXPECT_EQ(errorOf(await(std::move(task))), ClientError(Cancelled{}));
  }
};

TEST_P(Cancel, BeforeTheFirstByte) {
  auto get = client->sessions(stop.get_token());
  auto post = client->interrupt("s", stop.get_token());
  end();
  EXPECT_FALSE(get.isReady() || post.isReady()) << "they end from the event loop, not inside what stops them";
  expectCancelled(std::move(get));
  expectCancelled(std::move(post));
  support::spinFor(50ms);
  EXPECT_EQ(bridge.requests().size(), 0u);
}

TEST_P(Cancel, WhileTheBridgeIsSilent) {
  bridge.expect("GET", "/v1/sessions", Script::silence());
  bridge.expect("POST", "/v1/sessions/s/interrupt", Script::silence());
  auto get = client->sessions(stop.get_token());
  auto post = client->interrupt("s", stop.get_token());
  ASSERT_TRUE(spinUntil([&] { return bridge.requests().size() == 2; }));
  end();
  EXPECT_FALSE(get.isReady() || post.isReady()) << "they end from the event loop, not inside what stops them";
  expectCancelled(std::move(get));
  expectCancelled(std::move(post));
}

TEST_P(Cancel, InTheMiddleOfABody) {
  bridge.expect("GET", "/v1/sessions", Script::shortBody(bigEnvelope(), 1'000'000, Script::Then::KeepOpen));
  Script onTheHead = Script::silence();
  onTheHead.early = true;
  bridge.expect("POST", "/v1/sessions/s/uploads", onTheHead);
  auto get = client->sessions(stop.get_token());
  auto post = client->upload("s", QByteArray(3'000'000, 'x'), "t", "n", stop.get_token());
  ASSERT_TRUE(spinUntil([&] { return bridge.requests().size() == 2; }));
  support::spinFor(30ms);
  end();
  EXPECT_FALSE(get.isReady() || post.isReady()) << "they end from the event loop, not inside what stops them";
  expectCancelled(std::move(get));
  expectCancelled(std::move(post));
}

TEST_P(Cancel, WhileAWorkerDecodes) {
  const std::string body = bigEnvelope();
  bridge.expect("GET", "/v1/sessions", Script::json(200, body));
  auto task = client->sessions(stop.get_token());
  ASSERT_TRUE(spinUntil([&] { return QThreadPool::globalInstance()->activeThreadCount() > 0; }));
  end();
  expectCancelled(std::move(task));
}

TEST_P(Cancel, ADroppedTaskStillEnds) {
  bridge.expect("GET", "/v1/sessions", Script::silence());
  {
    const auto dropped = client->sessions(stop.get_token());
  }
  ASSERT_TRUE(spinUntil([&] { return bridge.requests().size() == 1; }));
  end();
  support::spinFor(20ms);  // the frame ends here; the address sanitizer sees whether it was freed, and once
}

INSTANTIATE_TEST_SUITE_P(Ways, Cancel, testing::Values(By::Token, By::ClientGone),
                         [](const auto& way) { return way.param == By::Token ? "Token" : "ClientGone"; });

TEST(CancelledBeforehand, NothingIsSent) {
  FakeBridge bridge;
  APIClient client(credentialsFor(bridge.baseURL()));
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(errorOf(await(client.interrupt("s", stop.get_token()))), ClientError(Cancelled{}));
  EXPECT_EQ(errorOf(await(client.sessions(stop.get_token()))), ClientError(Cancelled{}));
  EXPECT_EQ(bridge.connections(), 0);
}

}  // namespace
}  // namespace varnel::client
