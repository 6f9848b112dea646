// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/performer.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "host/agent/demo/tool_runs.h"

namespace varnel::agent::demo {

using wire::CodexTurnState;

namespace {

constexpr double kShortestTurn = 6.5;
constexpr double kLongestTurn = 9.0;

bool isApproval(const Ask& ask) {
  return ask.method != kUserInput;
}

}  // namespace

Performer::Performer(const boost::asio::any_io_executor& executor, const Stage& stage, DemoConversation& conversation)
    : m_stage(stage),
      m_conversation(conversation),
      m_scribe(conversation, stage.now, stage.report),
      m_timer(executor) {}

void Performer::play(Script script, std::function<Script()> next) {
  const double playing = playingTime(script);
  m_pace = std::clamp(playing, kShortestTurn, kLongestTurn) / std::max(playing, 0.1) / m_stage.speed;
  m_queue.assign(std::make_move_iterator(script.begin()), std::make_move_iterator(script.end()));
  m_next = std::move(next);
  m_scribe.beginTurn();
  schedule(kStepSeconds);
}

void Performer::carryOn(Script rest, std::optional<Ask> waiting) {
  m_pace = waiting ? 1 / m_stage.speed : 1;
  m_queue.assign(std::make_move_iterator(rest.begin()), std::make_move_iterator(rest.end()));
  m_waiting = std::move(waiting);
  if (!m_waiting) schedule(kStepSeconds);
}

void Performer::steer(std::string text) {
  m_queue.push_front({Say{"Understood: “" + excerpt(text, 120) + "” – I take that into this turn.", false}});
  m_steered.push_back(std::move(text));
}

void Performer::interrupt() {
  m_next = {};
  endWith(CodexTurnState::Interrupted);
}

void Performer::halt() {
  m_tick.reset();
  m_timer.cancel();
}

void Performer::schedule(double seconds) {
  m_tick = std::make_shared<bool>(true);
  m_timer.expires_after(
      std::chrono::duration_cast<std::chrono::steady_clock::duration>(std::chrono::duration<double>(seconds * m_pace)));
  m_timer.async_wait([this, tick = std::weak_ptr<bool>(m_tick)](const boost::system::error_code& error) {
    if (!error && !tick.expired()) step();
  });
}

void Performer::step() {
  if (m_speech) {
    sayMore();
  } else if (m_tool) {
    m_scribe.endTool(*m_tool, m_tool->status);
    m_tool.reset();
    schedule(kStepSeconds);
  } else if (m_queue.empty()) {
    finishTurn();
  } else {
    Step next = std::move(m_queue.front());
    m_queue.pop_front();
    perform(std::move(next));
  }
}

void Performer::perform(Step next) {
  if (auto* say = std::get_if<Say>(&next.what)) {
    speak(std::move(*say));
  } else if (auto* question = std::get_if<Ask>(&next.what)) {
    ask(std::move(*question));
  } else if (auto* run = std::get_if<ToolRun>(&next.what)) {
    m_scribe.beginTool(*run);
    m_tool = std::move(*run);
    schedule(m_tool->seconds);
  } else if (const auto* failure = std::get_if<Fail>(&next.what)) {
    m_next = {};
    m_queue.clear();
    m_steered.clear();
    m_scribe.failTurn(failure->message);
  } else if (const auto* pause = std::get_if<Pause>(&next.what)) {
    schedule(pause->seconds);
  } else {
    if (const auto* plan = std::get_if<MovePlan>(&next.what)) m_scribe.movePlan(*plan);
    if (const auto* thought = std::get_if<Think>(&next.what)) m_scribe.think(thought->summary);
    schedule(kStepSeconds);
  }
}

void Performer::speak(Say say) {
  if (say.final) say.text += takeSteered();
  m_scribe.beginMessage(say.final);
  m_speech = Speech{std::move(say.text), 0};
  sayMore();
}

void Performer::sayMore() {
  const std::size_t end = pieceEnd(m_speech->text, m_speech->said);
  m_scribe.growMessage(std::string_view(m_speech->text).substr(m_speech->said, end - m_speech->said));
  m_speech->said = end;
  if (end == m_speech->text.size()) m_speech.reset();
  schedule(kPieceSeconds);
}

std::string Performer::takeSteered() {
  std::string text;
  for (const std::string& words : std::exchange(m_steered, {})) {
    text += "\n\n**On what you added meanwhile**\n\n> " + excerpt(words, 200) +
            "\n\nThat is in: the change above takes it into account, and nothing else had to move for it.";
  }
  return text;
}

bool Performer::mayPass(const Ask& question) const {
  if (!isApproval(question)) return false;
  return m_conversation.approvalPolicy == "never" ||
         (question.subject && m_conversation.allowedForSession.contains(question.subject->title));
}

void Performer::ask(Ask question) {
  if (mayPass(question)) {
    prepend(std::move(question.accepted));
    if (question.subject) m_queue.push_front({std::move(*question.subject)});
    schedule(kStepSeconds);
    return;
  }
  if (question.subject) m_scribe.beginTool(*question.subject);
  m_scribe.ask(question);
  m_waiting = std::move(question);
}

void Performer::answer(const std::string& requestId, const Verdict& verdict) {
  if (!m_waiting) return;
  Ask question = std::move(*m_waiting);
  m_waiting.reset();
  m_scribe.closeRequest(requestId);
  if (verdict.forSession && question.subject) m_conversation.allowedForSession.insert(question.subject->title);
  fill(question.accepted, Words{{"answer", excerpt(verdict.words, 200)}});
  m_scribe.setState(CodexTurnState::Working);
  prepend(std::move(verdict.accepted ? question.accepted : question.declined));
  if (!question.subject) {
    schedule(kStepSeconds);
  } else if (verdict.accepted) {
    m_tool = std::move(question.subject);
    schedule(m_tool->seconds);
  } else {
    m_scribe.endTool(*question.subject, question.subject->type == "mcpToolCall" ? "failed" : "declined");
    schedule(kStepSeconds);
  }
}

void Performer::prepend(Script script) {
  m_queue.insert(m_queue.begin(), std::make_move_iterator(script.begin()), std::make_move_iterator(script.end()));
}

void Performer::finishTurn() {
  if (!m_steered.empty()) {
    m_queue.push_back({Say{"Done as well.", true}});
    schedule(kStepSeconds);
    return;
  }
  endWith(CodexTurnState::Done);
  if (!m_next) return;
  const auto next = std::move(m_next);
  if (Script script = next(); !script.empty()) play(std::move(script), next);
}

void Performer::endWith(CodexTurnState state) {
  halt();
  m_queue.clear();
  m_speech.reset();
  m_tool.reset();
  m_waiting.reset();
  m_steered.clear();
  const auto size = static_cast<std::int64_t>(m_conversation.items.size());
  const std::int64_t input = 4'200 + 310 * std::min<std::int64_t>(size, 90);
  const auto output = static_cast<std::int64_t>(m_conversation.ids.below(900)) + 650;
  m_scribe.countTokens(input, output, output / 3);
  m_scribe.endTurn(state);
  m_stage.spend(input + output);
}

}  // namespace varnel::agent::demo
