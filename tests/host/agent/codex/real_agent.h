// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/json/value.h"
#include "core/wire/session_detail.h"
#include "host/store/store.h"
#include "tests/support/http_client.h"
#include "tests/support/running_bridge.h"
#include "tests/support/temporary_directory.h"

namespace varnel::agent::codex {

/// A process of the test's own, with a pipe to it and one from it; ended with this.
class Process {
 public:
  Process(std::vector<std::string> words, const std::vector<std::string>& environment, const std::string& folder);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// The next line that it prints; empty at its end.
  std::string line();
  void closeInput();
  /// Closes its input and waits for its end; the exit status.
  int finish();
  void kill() const;

 private:
  pid_t m_pid = 0;
  int m_input = -1;
  int m_output = -1;
};

/// A conversation as a phone reads it.
struct Detail {
  wire::SessionSummary session;
  std::vector<wire::TranscriptItem> items;
  std::vector<wire::PendingRequest> requests;
  std::vector<wire::QueuedMessage> queued;

  [[nodiscard]] bool says(const std::string& text) const;
  /// The last item of that type; throws when there is none.
  [[nodiscard]] const wire::TranscriptItem& last(const std::string& type) const;
};

/// The real agent's own program with a scripted model, behind a bridge that a phone talks to. Skips when the program
/// is not there.
class RealAgentTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  void startModel(const std::vector<std::string>& options = {});
  void startBridge();
  void stopBridge();
  /// The process that all share; ended by the signal.
  [[nodiscard]] std::optional<pid_t> serverProcess() const;
  void killServer();

  support::Response get(const std::string& path);
  support::Response post(const std::string& path, const json::JSONValue& body = json::JSONValue::Object());
  support::Response remove(const std::string& path);
  std::string begin(const std::string& prompt, const std::string& policy = "on-request",
                    const std::string& sandbox = "workspace-write");
  support::Response say(const std::string& id, const std::string& text, const std::string& mode = "default",
                        json::JSONValue::Array attachments = {});
  static json::JSONValue::Object message(const std::string& text, const std::string& mode = "default");
  Detail detail(const std::string& id);
  /// Nothing while the agent is away.
  std::optional<Detail> look(const std::string& id);
  std::vector<wire::SessionSummary> sessions();
  /// Looks whenever the bridge tells of a change until the condition holds; the conversation then. Fails the test after
  /// a while.
  Detail until(const std::string& id, const std::function<bool(const Detail&)>& holds);
  Detail untilState(const std::string& id, wire::CodexTurnState state);
  /// The same for the list.
  wire::SessionSummary untilListed(const std::function<bool(const wire::SessionSummary&)>& holds);
  support::Response answer(const wire::PendingRequest& request, json::JSONValue result);
  wire::PendingRequest untilAsked(const std::string& id);
  [[nodiscard]] std::string program() const;
  [[nodiscard]] std::vector<std::string> environment() const;

  varnel::testing::TemporaryDirectory folder;
  std::filesystem::path home;
  std::filesystem::path work;
  std::unique_ptr<store::Store> memory;  ///< of the bridge, over its restarts
  std::unique_ptr<Process> model;
  std::unique_ptr<support::RunningBridge> bridge;
  std::string token;
  int keys = 0;

 private:
  template <class Look>
  void lookUntil(Look look);
};

}  // namespace varnel::agent::codex
