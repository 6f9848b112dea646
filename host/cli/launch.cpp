// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "host/agent/codex/server.h"
#include "host/cli/commands.h"

namespace varnel::cli {

int launch(const LaunchOptions& options) {
  const auto command = agent::codex::findCommand("codex");
  if (!command) return fail("Codex is not installed: there is no program \"codex\" in PATH.");
  const agent::codex::Installation installation{.command = *command, .home = agent::codex::agentHome(), .log = {}};
  // The agent in a terminal attaches by itself to the server that runs.
  if (const auto ready = agent::codex::ensureServer(installation); !ready) {
    return fail("The agent's server does not start: " + ready.error() + ".");
  }
  std::vector<std::string> words{command->string()};
  words.insert(words.end(), options.arguments.begin(), options.arguments.end());
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  ::execv(command->c_str(), arguments.data());
  return fail(command->string() + ": " + std::strerror(errno));
}

}  // namespace varnel::cli
