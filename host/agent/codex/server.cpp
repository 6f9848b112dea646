// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/server.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

namespace varnel::agent::codex {

namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

constexpr std::chrono::seconds kStartTime{20};

bool isListening(const std::filesystem::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string name = path.string();
  if (name.size() >= sizeof address.sun_path) return false;
  std::ranges::copy(name, address.sun_path);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const bool listens = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(socket);
  return listens;
}

bool isProgram(const std::filesystem::path& path) {
  return std::filesystem::is_regular_file(path) && ::access(path.c_str(), X_OK) == 0;
}

/// True when a user's service manager runs that could hold a scope.
bool hasServiceManager() {
  const auto runtime = environment("XDG_RUNTIME_DIR");
  std::error_code error;
  return !runtime.empty() && std::filesystem::is_socket(std::filesystem::path(runtime) / "systemd/private", error) &&
         findCommand("systemd-run");
}

/// Runs a command that puts itself into the background, and waits until it has.
std::expected<void, std::string> runToBackground(std::vector<std::string> words, const std::filesystem::path& log) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const std::string output = log.empty() ? "/dev/null" : log.string();
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
  // It outlives us: a listener or a lock of ours in its hands would keep the next bridge from starting.
  posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
  pid_t child = 0;
  const int failed = ::posix_spawnp(&child, arguments[0], &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  if (failed != 0) return std::unexpected(words[0] + ": " + std::strerror(failed));
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
  return std::unexpected(words[0] + " failed");
}

}  // namespace

std::optional<std::filesystem::path> findCommand(const std::string& name) {
  if (name.contains('/')) return isProgram(name) ? std::optional(std::filesystem::absolute(name)) : std::nullopt;
  std::istringstream folders(environment("PATH"));
  for (std::string folder; std::getline(folders, folder, ':');) {
    auto path = std::filesystem::path(folder) / name;
    if (!folder.empty() && isProgram(path)) return path;
  }
  return std::nullopt;
}

std::filesystem::path agentHome() {
  const auto named = environment("CODEX_HOME");
  return named.empty() ? std::filesystem::path(environment("HOME")) / ".codex" : std::filesystem::path(named);
}

std::expected<void, std::string> startServer(const Installation& installation) {
  std::error_code error;
  std::filesystem::create_directories(installation.home, error);
  if (error) return std::unexpected(installation.home.string() + ": " + error.message());
  const std::vector<std::string> server{
      "env",    "CODEX_HOME=" + installation.home.string(), installation.command.string(), "app-server", "--listen",
      "unix://"};
  std::vector<std::string> words{"setsid", "--fork"};
  auto scoped = words;
  for (const auto* word : {"systemd-run", "--user", "--scope", "--collect", "--quiet", "--"}) scoped.emplace_back(word);
  auto& chosen = hasServiceManager() ? scoped : words;
  chosen.insert(chosen.end(), server.begin(), server.end());
  return runToBackground(chosen, installation.log);
}

std::expected<void, std::string> ensureServer(const Installation& installation) {
  const auto path = installation.socket();
  if (isListening(path)) return {};
  if (auto started = startServer(installation); !started) return started;
  const auto end = std::chrono::steady_clock::now() + kStartTime;
  while (std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    if (isListening(path)) return {};
  }
  return std::unexpected("it does not listen on " + path.string());
}

std::string serverIdOf(int socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return "0";
  // The 22nd field is when the process began; the name before it may hold anything.
  std::ifstream file("/proc/" + std::to_string(peer.pid) + "/stat");
  std::string line;
  std::getline(file, line);
  const auto end = line.rfind(')');
  std::istringstream fields(end == std::string::npos ? std::string() : line.substr(end + 1));
  std::string field;
  for (int index = 3; index <= 22; ++index) fields >> field;
  return std::to_string(peer.pid) + "." + field;
}

}  // namespace varnel::agent::codex
