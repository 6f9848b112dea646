// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/agent/demo/script.h"

/// Reads the written scripts of content/. A script is a head of `key: value` lines and then blocks, each begun by a
/// line
/// `@@ KIND name=value ...`:
///
///     @@ turn ago=2h state=completed   a turn begins; everything after it belongs to it
///     @@ user | say | answer | think | fail        the body is the text
///     @@ command exit=0 seconds=0.8    first line the command, the rest its output
///     @@ edit                          parts begun by `=== add|update|delete PATH`, each followed by its diff
///     @@ tool server=S name=N          the body is {"arguments", "result", "error"}
///     @@ search                        the body is the query
///     @@ delegate                      the body is what a second agent is told
///     @@ plan                          `[x]`, `[>]` and `[ ]` steps; a first line without a box is the explanation
///     @@ pause seconds=2
///     @@ ask command|edit|tool         the body is the reason, the next block the tool that waits for the answer
///     @@ ask permissions|question|elicitation      the body is the parameters
///     @@ accepted, @@ declined, @@ end what follows either answer; after the end the turn goes on
///     @@ live                          from here on the turn is played when the agent starts
namespace varnel::agent::demo {

struct ScriptTurn {
  double ago = 0;     ///< seconds before the start at which it began
  double every = 20;  ///< seconds from one item to the next
  std::string state = "completed";
  Script told;
  std::optional<Script> live;
};

struct ScriptFile {
  std::map<std::string, std::string, std::less<>> head;
  std::vector<ScriptTurn> turns;  ///< a file without `@@ turn` has one

  /// The value of a head line, or the fallback.
  [[nodiscard]] std::string get(std::string_view key, std::string_view fallback = {}) const;
};

/// Throws std::logic_error naming file and line when the text is not such a script: it is a part of the program.
ScriptFile parseScript(std::string_view name, std::string_view text);

/// `90s`, `5m`, `3h`, `2d` or a sum such as `1h30m`, in seconds. Throws std::logic_error on anything else.
double parseAgo(std::string_view text);

}  // namespace varnel::agent::demo
