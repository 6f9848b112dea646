// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <sys/stat.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "host/cli/commands.h"
#include "host/store/state_directory.h"

namespace varnel::cli {

namespace {

constexpr int kWrongUsage = 2;

void addStateDirectory(CLI::App& command, std::filesystem::path& path) {
  path = store::StateDirectory::defaultPath();
  command.add_option("--state-dir", path, "Folder that the bridge keeps its state in")->type_name("DIR");
}

void addServe(CLI::App& app, ServeOptions& options) {
  auto& command = *app.add_subcommand("serve", "Run the bridge that phones talk to");
  command
      .add_option("--agent", options.agent,
                  "The agent behind the bridge: codex (the default when it is installed) or demo")
      ->type_name("NAME");
  command.add_option("--agent-command", options.agentCommand, "Codex: its program, when it is not in PATH")
      ->type_name("FILE");
  command.add_option("--project", options.projects, "Codex: one more folder that sessions may begin in")
      ->type_name("DIR");
  command.add_option("--forbid", options.forbidden, "A sandbox or approval policy that phones may not choose")
      ->check(CLI::IsMember({"danger-full-access", "workspace-write", "never", "on-failure"}));
  command.add_option("--listen", options.listen, "Address and port, 0 for any free one")->type_name("ADDR:PORT");
  command.add_flag("--allow-remote", options.allowRemote, "Let other machines in: listen beyond loopback");
  command.add_option("--base-url", options.baseURL, "The address that phones are told, if it is another one")
      ->type_name("URL");
  addStateDirectory(command, options.stateDirectory);
  auto& demo = options.demo;
  command.add_option("--seed", demo.seed, "Demo: which of many like worlds");
  command.add_option("--speed", demo.speed, "Demo: how many times faster than life")->check(CLI::PositiveNumber);
  command.add_option("--large-conversation", demo.largeConversationItems, "Demo: one more, of that many items")
      ->type_name("N");
  command.add_option("--extra-conversations", demo.extraConversations, "Demo: that many more")->type_name("N");
}

void addPair(CLI::App& app, PairOptions& options) {
  auto& command = *app.add_subcommand("pair", "Show a pairing code for a phone");
  addStateDirectory(command, options.stateDirectory);
  command.add_flag("--json", options.json, "One JSON object a line");
  command.add_option("--png", options.picture, "Write the code as a picture, too")->type_name("FILE");
}

void addDevices(CLI::App& app, DevicesOptions& options) {
  auto& command = *app.add_subcommand("devices", "Show, rename and revoke the phones that are paired");
  command.require_subcommand(1);
  auto& list = *command.add_subcommand("list", "Show all");
  auto& revoke = *command.add_subcommand("revoke", "Let a phone in no longer");
  auto& rename = *command.add_subcommand("rename", "Give a phone another name");
  for (auto* each : {&list, &revoke, &rename}) {
    addStateDirectory(*each, options.stateDirectory);
    each->add_flag("--json", options.json, "Print the devices as JSON");
    if (each != &list) each->add_option("device", options.device, "Its id, or its name")->required();
  }
  rename.add_option("name", options.name, "The new name")->required();
  revoke.callback([&options] { options.command = "revoke"; });
  rename.callback([&options] { options.command = "rename"; });
}

/// Without a first word, or with "--", the agent itself is meant.
std::optional<LaunchOptions> readLaunch(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.empty()) return LaunchOptions{};
  if (words.front() != "--") return std::nullopt;
  return LaunchOptions{.arguments = {words.begin() + 1, words.end()}};
}

int run(int argc, char** argv) {
  if (const auto launched = readLaunch(argc, argv)) return launch(*launched);
  CLI::App app("Follow and steer a coding agent from a phone: the host's side.", "varnel");
  app.set_version_flag("--version", std::string("varnel ") + VARNEL_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Without a command, or as varnel -- ARGUMENTS, it starts the agent in this terminal, so that phones see it.");
  ServeOptions serving;
  PairOptions pairing;
  DevicesOptions listing;
  addServe(app, serving);
  addPair(app, pairing);
  addDevices(app, listing);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& stop) {
    return app.exit(stop) == 0 ? 0 : kWrongUsage;
  }
  if (app.got_subcommand("serve")) return serve(serving);
  if (app.got_subcommand("pair")) return pair(pairing);
  return devices(listing);
}

}  // namespace

}  // namespace varnel::cli

int main(int argc, char** argv) {
  ::umask(0077);
  try {
    return varnel::cli::run(argc, argv);
  } catch (const std::exception& error) {
    return varnel::cli::fail(error.what());
  }
}
