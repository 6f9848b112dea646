// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "host/agent/demo/demo_conversation.h"
#include "host/agent/demo/script.h"

namespace varnel::agent::demo {

/// Writes into one conversation what happens in it, stamps it with the time, and reports each change. The conversation
/// outlives it. Knows nothing of when things happen: history is written by it as well as what is played live.
class Scribe {
 public:
  Scribe(DemoConversation& conversation, std::function<double()> now, std::function<void(const Change&)> report);

  void beginTurn();
  /// Ends the turn, tools that still run and requests that are open with it.
  void endTurn(wire::CodexTurnState state);
  /// As `endTurn`, with the agent's words on why.
  void failTurn(const std::string& message);
  void setState(wire::CodexTurnState state);

  void addUserMessage(const TurnInput& input);
  void beginMessage(bool final);
  void growMessage(std::string_view more);
  void think(const std::string& summary);
  void movePlan(const MovePlan& plan);

  void beginTool(const ToolRun& run);
  /// The tool begun last; `status` is the agent's word for how it ended.
  void endTool(const ToolRun& run, const std::string& status);

  /// Asks and waits; the id of the request. The tool it is about has begun before.
  std::string ask(const Ask& question);
  void closeRequest(const std::string& requestId);

  /// Tokens that the turn took, at the bridge's call for settings and usage.
  void countTokens(std::int64_t input, std::int64_t output, std::int64_t reasoning);
  void report(Change::Kind kind);
  void touch();

 private:
  wire::TranscriptItem& append(std::string_view idPrefix, std::string_view type);
  void endOpenTools();

  DemoConversation& m_conversation;
  std::size_t m_message = 0;  ///< the one that grows; the user may have spoken since it began
  std::function<double()> m_now;
  std::function<void(const Change&)> m_report;
};

}  // namespace varnel::agent::demo
