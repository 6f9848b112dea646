// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/run_handler.h"

#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <memory>

#include "host/service/bridge.h"
#include "host/service/log.h"

namespace varnel::http {

namespace asio = boost::asio;

namespace {

constexpr std::size_t kLongestKey = 200;

Answer answerOf(const service::Outcome<std::string>& outcome) {
  return outcome ? Answer{.status = 200, .body = *outcome} : answerTo(outcome.error());
}

/// Where the handler leaves its answer; the request may have stopped waiting.
struct Slot {
  explicit Slot(const asio::any_io_executor& executor) : filled(executor) {}
  asio::steady_timer filled;
  std::optional<Answer> answer;
};

/// Runs to its end, whether or not anybody still waits.
asio::awaitable<void> work(Job job, std::optional<service::Repeats::Request> request, std::shared_ptr<Slot> slot) {
  auto& repeats = job.bridge.repeats;
  Answer answer = errorAnswer(500, "The bridge failed. Its log says more.");
  try {
    const std::string key = job.key.empty() ? store::randomText(16) : job.key;
    answer = answerOf(co_await job.route.handler({.bridge = job.bridge,
                                                  .target = std::move(job.target),
                                                  .ids = std::move(job.ids),
                                                  .body = std::move(job.body),
                                                  .key = key}));
  } catch (const std::exception& error) {
    service::log(std::string("a request failed: ") + error.what());
  }
  slot->answer = answer;
  slot->filled.cancel();
  if (request) repeats.finish(*request, {.status = answer.status, .body = std::move(answer.body)});
}

void report(const std::exception_ptr& failure) {
  if (failure) service::log("a request did not run to its end");
}

}  // namespace

store::Digest contentOf(const Job& job) {
  constexpr std::string_view kNext("\0", 1);
  const std::string_view method = boost::beast::http::to_string(job.route.verb);
  return store::DigestBuilder().add(method).add(kNext).add(job.path).add(kNext).add(job.body).finish();
}

service::Outcome<std::optional<service::Repeats::Request>> repeatable(const std::optional<store::Device>& device,
                                                                      const std::string& key, store::Digest content) {
  if (!device || key.empty()) return std::nullopt;
  const bool isPrintable = std::ranges::all_of(key, [](char byte) { return byte > ' ' && byte < '\x7f'; });
  if (key.size() > kLongestKey || !isPrintable) {
    return service::refuse(service::Failure::Kind::Invalid, "The idempotency key is not one.");
  }
  return service::Repeats::Request{.deviceId = device->id, .key = key, .content = content};
}

asio::awaitable<Answer> runHandler(Job job) {
  // Reading again is no repetition: it is asked what is true now.
  const bool isCommand = job.route.verb == boost::beast::http::verb::post;
  const auto request = repeatable(job.device, isCommand ? job.key : std::string(), contentOf(job));
  if (!request) co_return answerTo(request.error());
  if (*request) {
    const auto before = job.bridge.repeats.begin(**request);
    if (!before) co_return answerTo(before.error());
    if (*before) co_return Answer{.status = (*before)->status, .body = (*before)->body};
  }
  const auto executor = co_await asio::this_coro::executor;
  const auto slot = std::make_shared<Slot>(executor);
  slot->filled.expires_after(job.time);
  asio::co_spawn(executor, work(std::move(job), *request, slot), report);
  if (!slot->answer) co_await slot->filled.async_wait(asio::as_tuple(asio::use_awaitable));
  if (slot->answer) co_return std::move(*slot->answer);
  co_return answerTo({.kind = service::Failure::Kind::TimedOut, .text = "The agent did not answer in time."});
}

}  // namespace varnel::http
