// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/history.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "host/agent/demo/catalogue.h"
#include "host/agent/demo/scribe.h"

namespace varnel::agent::demo {

using wire::CodexTurnState;

namespace {

/// Writes down one step after the other, each `every` seconds later than the last, never later than now.
class Teller {
 public:
  Teller(DemoConversation& conversation, double now)
      : m_now(now), m_scribe(conversation, [this] { return m_clock; }, [](const Change&) {}) {}

  /// The question that the turn ends in, when it waits for an answer.
  std::optional<Ask> tell(const ScriptTurn& turn, std::optional<Script>& live) {
    m_clock = m_now - turn.ago;
    m_every = turn.every;
    m_scribe.beginTurn();
    m_failed = false;
    for (std::size_t i = 0; i < turn.told.size(); ++i) {
      std::visit(*this, turn.told[i].what);
      m_clock = std::min(m_clock + m_every, m_now);
      if (!m_waiting) continue;
      live = Script(turn.told.begin() + static_cast<std::ptrdiff_t>(i) + 1, turn.told.end());
      return std::move(m_waiting);
    }
    m_scribe.countTokens(5'200 + 1'340 * static_cast<std::int64_t>(turn.told.size()), 900, 310);
    live = turn.live;
    end(turn.state);
    return std::nullopt;
  }

  void operator()(const Say& say) {
    m_scribe.beginMessage(say.final);
    m_scribe.growMessage(say.text);
  }
  void operator()(const Think& think) { m_scribe.think(think.summary); }
  void operator()(const Hear& hear) { m_scribe.addUserMessage(TurnInput{hear.text, {}, {}, {}}); }
  void operator()(const MovePlan& plan) { m_scribe.movePlan(plan); }
  void operator()(const Pause& pause) { m_clock = std::min(m_clock + pause.seconds, m_now); }
  void operator()(const Fail& fail) {
    m_scribe.failTurn(fail.message);
    m_failed = true;
  }
  void operator()(const ToolRun& run) {
    m_scribe.beginTool(run);
    if (run.status != "inProgress") m_scribe.endTool(run, run.status);
  }
  void operator()(const Ask& question) {
    if (question.subject) m_scribe.beginTool(*question.subject);
    m_scribe.ask(question);
    m_waiting = question;
  }

 private:
  void end(const std::string& state) {
    if (m_failed || state == "running") return;
    if (state == "completed") {
      m_scribe.endTurn(CodexTurnState::Done);
    } else if (state == "interrupted") {
      m_scribe.endTurn(CodexTurnState::Interrupted);
    } else if (state == "stale") {
      m_scribe.endTurn(CodexTurnState::Stale);
    } else {
      throw std::logic_error("no such state of a turn: " + state);
    }
  }

  double m_now;
  double m_clock = 0;
  double m_every = 20;
  bool m_failed = false;
  Scribe m_scribe;
  std::optional<Ask> m_waiting;
};

wire::ConversationPreferences preferencesOf(const ScriptFile& script) {
  wire::ConversationPreferences preferences = defaultPreferences();
  if (script.get("mode") == "plan") preferences.mode = wire::CodexCollaborationMode::Plan;
  preferences.model = script.get("model", preferences.model);
  preferences.reasoningEffort = script.get("effort", preferences.reasoningEffort);
  if (const std::string tier = script.get("tier"); !tier.empty()) preferences.serviceTier = tier;
  return preferences;
}

}  // namespace

Told tellHistory(const Library::NamedScript& source, std::uint64_t seed, double now) {
  const ScriptFile& script = source.script;
  Told told{.conversation = std::make_unique<DemoConversation>(), .live = {}, .waiting = {}};
  DemoConversation& conversation = *told.conversation;
  conversation.ids = IdStream(seed, source.name);
  conversation.sandbox = script.get("sandbox", conversation.sandbox);
  conversation.approvalPolicy = script.get("approval", conversation.approvalPolicy);
  auto& summary = conversation.summary;
  summary.id = conversation.ids.uuid();
  if (const std::string name = script.get("name"); !name.empty()) summary.name = name;
  summary.cwd = script.get("cwd");
  summary.project = projectOf(summary);
  summary.turnPreferences = preferencesOf(script);
  Teller teller(conversation, now);
  for (const ScriptTurn& turn : script.turns) told.waiting = teller.tell(turn, told.live);
  return told;
}

}  // namespace varnel::agent::demo
