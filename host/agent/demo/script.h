// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core/json/value.h"
#include "core/wire/session.h"

/// What the agent does in a turn, as data: history is told from it at once, a live turn is played from it in time.
namespace varnel::agent::demo {

struct Step;
using Script = std::vector<Step>;

/// A message of the agent, markdown; the final one ends a turn's work, the others comment on it.
struct Say {
  std::string text;
  bool final = false;
};

/// A piece of reasoning.
struct Think {
  std::string summary;
};

/// A message of the user; only in conversations told as history.
struct Hear {
  std::string text;
};

/// A tool at work: a command, an edit, a call. `before` and `after` are the members of the agent's own item while the
/// tool runs and what its end adds or changes; `id`, `type` and `status` are put in when it is written down.
struct ToolRun {
  std::string type;
  std::string title;
  json::JSONValue::Object before;
  json::JSONValue::Object after;
  std::string status = "completed";  ///< how it ends
  double seconds = 0.8;
};

struct MovePlan {
  std::optional<std::string> explanation;
  std::vector<wire::ConversationPlanStep> steps;
};

struct Pause {
  double seconds = 0;
};

/// The turn fails with this text.
struct Fail {
  std::string message;
};

/// The agent waits for an answer. `subject` is the tool that hangs on it, when there is one.
struct Ask {
  std::string method;
  json::JSONValue::Object params;  ///< without the ids and the time, which are put in when it is asked
  json::JSONValue::Array decisions;
  std::optional<ToolRun> subject;
  Script accepted;
  Script declined;
};

struct Step {
  std::variant<Say, Think, Hear, ToolRun, MovePlan, Pause, Fail, Ask> what;
};

/// Words put in place of `{{name}}` in every text of a script.
using Words = std::map<std::string, std::string, std::less<>>;
void fill(std::string& text, const Words& words);
void fill(Script& script, const Words& words);

/// How long the script takes when it is played at its own pace and every request is granted at once, in seconds.
double playingTime(const Script& script);

/// A message grows in that many pieces at most, one in so many seconds.
inline constexpr std::size_t kMostPieces = 12;
inline constexpr std::size_t kLeastPieceBytes = 24;
inline constexpr double kPieceSeconds = 0.12;
inline constexpr double kStepSeconds = 0.15;

/// The end of the next piece of a message that stands at `from`: at white space where there is some, else between code
/// points.
std::size_t pieceEnd(const std::string& text, std::size_t from);

}  // namespace varnel::agent::demo
