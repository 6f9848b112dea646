// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

/// The agent's own server process, shared by the bridge and every terminal: where it listens and how it is started.
namespace varnel::agent::codex {

struct Installation {
  std::filesystem::path command;  ///< the agent's program
  std::filesystem::path home;     ///< the agent's folder
  std::filesystem::path log;      ///< what the server prints goes there; nowhere when empty

  [[nodiscard]] std::filesystem::path socket() const { return home / "app-server-control" / "app-server-control.sock"; }
};

/// The program of that name in PATH, or at that path; nothing when there is none.
std::optional<std::filesystem::path> findCommand(const std::string& name);
/// $CODEX_HOME, or ~/.codex.
std::filesystem::path agentHome();

/// Starts the server so that it outlives whoever starts it: in a scope of its own when a user's service manager
/// answers, else in a session of its own. Returns when it is on its way; it listens a little later. The reason when it
/// cannot be started.
std::expected<void, std::string> startServer(const Installation& installation);

/// Returns once a server listens that was running or has been started; waits for that, without an event loop. The
/// reason when none does.
std::expected<void, std::string> ensureServer(const Installation& installation);

/// Names the process at the other end of a Unix socket, the same over all connections to it and after it has ended.
std::string serverIdOf(int socket);

}  // namespace varnel::agent::codex
