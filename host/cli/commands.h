// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/agent/demo/demo_agent.h"

/// The commands of `varnel`. Each returns the exit status: 0 when done, 1 when it failed and said why on standard
/// error.
namespace varnel::cli {

struct ServeOptions {
  std::string agent;                   ///< "codex" or "demo"; empty: codex when it is installed
  std::string agentCommand = "codex";  ///< a name in PATH, or a path
  std::vector<std::string> projects;   ///< folders to begin in, beside those that the agent knows
  std::vector<std::string> forbidden;  ///< sandboxes and approval policies that no phone may choose
  std::string listen = "127.0.0.1:8737";
  bool allowRemote = false;
  std::optional<std::string> baseURL;  ///< the address that phones are told, when it is another one
  std::filesystem::path stateDirectory;
  agent::demo::DemoOptions demo;
};
/// Runs the bridge until it is told to end.
int serve(ServeOptions options);

struct LaunchOptions {
  std::vector<std::string> arguments;
};
/// Becomes the agent in this terminal, at work on the server that the bridge follows; returns only when it cannot.
int launch(const LaunchOptions& options);

struct PairOptions {
  std::filesystem::path stateDirectory;
  bool json = false;
  std::optional<std::filesystem::path> picture;
};
/// Shows a pairing code until it is claimed.
int pair(const PairOptions& options);

struct DevicesOptions {
  std::filesystem::path stateDirectory;
  std::string command = "devices";  ///< or "revoke", "rename"
  std::string device;
  std::string name;
  bool json = false;
};
/// Asks the running bridge, or changes its files when none runs.
int devices(const DevicesOptions& options);

/// Says on standard error why a command failed; always 1.
int fail(const std::string& sentence);

}  // namespace varnel::cli
