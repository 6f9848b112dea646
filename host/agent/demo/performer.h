// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/steady_timer.hpp>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/agent/demo/answers.h"
#include "host/agent/demo/demo_conversation.h"
#include "host/agent/demo/scribe.h"
#include "host/agent/demo/script.h"

namespace varnel::agent::demo {

/// Plays scripts in one conversation, step by step in time: the living part of it. Stage and conversation outlive it.
class Performer {
 public:
  Performer(const boost::asio::any_io_executor& executor, const Stage& stage, DemoConversation& conversation);

  [[nodiscard]] bool isBusy() const { return m_conversation.summary.currentTurnId.has_value(); }
  Scribe& scribe() { return m_scribe; }

  /// Begins a turn that plays the script in six to ten seconds of the agent's time. `next` makes the script of the turn
  /// that follows by itself, empty for none; a goal takes several turns.
  void play(Script script, std::function<Script()> next = {});
  /// Goes on with a turn that history began, at its own pace whatever the speed: what is shown at work when the agent
  /// starts shall still be at work when someone looks. `waiting` is the question that history ended in.
  void carryOn(Script rest, std::optional<Ask> waiting);
  /// Takes words into the running turn.
  void steer(std::string text);
  /// Ends the turn where it stands, and what would have followed.
  void interrupt();
  /// Goes on after the open request was answered.
  void answer(const std::string& requestId, const Verdict& verdict);
  /// No more steps; nothing is said about it.
  void halt();

 private:
  struct Speech {
    std::string text;
    std::size_t said = 0;
  };

  void schedule(double seconds);
  void step();
  void perform(Step next);
  void speak(Say say);
  void sayMore();
  void ask(Ask question);
  [[nodiscard]] bool mayPass(const Ask& question) const;
  void go(const Ask& question, bool accepted);
  void finishTurn();
  void endWith(wire::CodexTurnState state);
  void prepend(Script script);
  std::string takeSteered();

  const Stage& m_stage;
  DemoConversation& m_conversation;
  Scribe m_scribe;
  boost::asio::steady_timer m_timer;
  std::shared_ptr<bool> m_tick;  ///< a timer that fires late finds its own tick gone
  std::deque<Step> m_queue;
  std::optional<Speech> m_speech;
  std::optional<ToolRun> m_tool;
  std::optional<Ask> m_waiting;
  std::vector<std::string> m_steered;
  std::function<Script()> m_next;
  double m_pace = 1;
};

}  // namespace varnel::agent::demo
