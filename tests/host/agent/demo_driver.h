// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <chrono>
#include <functional>
#include <optional>
#include <ranges>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/agent/demo/demo_agent.h"

namespace varnel::agent::demo {

inline constexpr double kToday = 1'795'000'000;

/// A demo agent on an event loop of its own, with a clock that stands still unless it is moved.
class Driver {
 public:
  explicit Driver(DemoOptions options = {.speed = 1000}) : m_agent(io.get_executor(), withClock(std::move(options))) {
    const auto started = call(m_agent.start([this](const Change& change) { changes.push_back(change); }));
    if (!started) throw std::runtime_error(started.error().text);
  }
  ~Driver() { m_agent.stop(); }
  Driver(const Driver&) = delete;
  Driver& operator=(const Driver&) = delete;

  Agent* operator->() { return &m_agent; }

  template <class T>
  Result<T> call(Task<T> task) {
    std::optional<Result<T>> result;
    boost::asio::co_spawn(io, std::move(task), [&](std::exception_ptr error, Result<T> value) {
      if (error) std::rethrow_exception(error);
      result = std::move(value);
    });
    runUntil([&] { return result.has_value(); });
    return *std::move(result);
  }

  /// Throws when the condition does not come true within ten seconds.
  void runUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
      if (io.stopped()) io.restart();
      io.run_one_until(deadline);
      if (std::chrono::steady_clock::now() >= deadline) throw std::runtime_error("waited ten seconds in vain");
    }
  }

  Conversation conversation(const std::string& id) { return call(m_agent.conversation(id)).value(); }
  std::vector<wire::SessionSummary> sessions() { return call(m_agent.sessions()).value(); }

  /// Looks at the conversation after every change until the condition holds.
  void lookUntil(const std::string& id, const std::function<bool(const Conversation&)>& condition) {
    while (true) {
      const std::size_t seen = changes.size();
      if (condition(conversation(id))) return;
      runUntil([&] { return changes.size() != seen; });
    }
  }

  void waitForState(const std::string& id, wire::CodexTurnState state) {
    lookUntil(id, [state](const Conversation& now) { return now.summary.state == state; });
  }

  /// The first unarchived conversation for which the condition holds.
  std::string find(const std::function<bool(const wire::SessionSummary&)>& condition) {
    for (const auto& summary : sessions()) {
      if (condition(summary)) return summary.id;
    }
    throw std::runtime_error("no such conversation");
  }
  std::string named(const std::string& name) {
    return find([&](const auto& summary) { return summary.project == name; });
  }
  std::string idle() { return named("quarry"); }

  static TurnInput message(std::string text,
                           wire::CodexCollaborationMode mode = wire::CodexCollaborationMode::Default) {
    return {.text = std::move(text),
            .preferences = {.mode = mode, .model = {}, .reasoningEffort = {}, .serviceTier = std::nullopt},
            .attachments = {},
            .clientMessageId = {}};
  }

  boost::asio::io_context io;
  std::vector<Change> changes;

 private:
  static DemoOptions withClock(DemoOptions options) {
    if (!options.now) options.now = [] { return kToday; };
    return options;
  }

  DemoAgent m_agent;
};

/// The text of the last item of the agent, empty when there is none.
inline std::string lastAnswer(const Conversation& conversation) {
  for (const auto& item : std::views::reverse(conversation.items)) {
    if (item.role == "assistant") return item.text.value_or("");
  }
  return {};
}

}  // namespace varnel::agent::demo
