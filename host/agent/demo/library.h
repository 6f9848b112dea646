// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/agent/demo/script_parser.h"

namespace varnel::agent::demo {

/// A way to answer, chosen by what stands in the message.
struct ReplyTemplate {
  std::vector<std::string> keywords;  ///< lower case; none for a template that fits everything
  ScriptFile script;
};

/// A conversation that ended long ago.
struct ArchiveEntry {
  std::string name;
  std::string cwd;
  std::string question;
  std::string answer;
};

/// Everything that was written for the agent to say, read once.
struct Library {
  struct NamedScript {
    std::string name;
    ScriptFile script;
  };
  std::vector<NamedScript> conversations;
  std::vector<ReplyTemplate> replies;
  std::vector<ScriptFile> plans;  ///< answers in plan mode
  std::vector<ScriptFile> goals;  ///< the turns of a goal, in order
  std::vector<ArchiveEntry> archive;
};

/// Throws std::logic_error when a text of content/ is not as it must be.
const Library& library();

}  // namespace varnel::agent::demo
