// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/host/agent/codex/real_agent.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "host/agent/codex/codex_agent.h"

namespace varnel::agent::codex {

namespace {

using json::JSONValue;
using Object = JSONValue::Object;
constexpr std::chrono::seconds kPatience{30};

}  // namespace

Process::Process(std::vector<std::string> words, const std::vector<std::string>& environment,
                 const std::string& folder) {
  std::array<int, 2> input{};
  std::array<int, 2> output{};
  if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0)
    throw std::runtime_error("no pipe");
  std::vector<std::string> variables = environment;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string name = std::string(*variable).substr(0, std::string_view(*variable).find('=') + 1);
    const bool isGiven = std::ranges::any_of(environment, [&](const auto& given) { return given.starts_with(name); });
    if (!isGiven) variables.emplace_back(*variable);
  }
  const auto pointers = [](std::vector<std::string>& texts) {
    std::vector<char*> all;
    for (auto& text : texts) all.push_back(text.data());
    all.push_back(nullptr);
    return all;
  };
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addchdir_np(&files, folder.c_str());
  posix_spawn_file_actions_adddup2(&files, input[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&files, output[1], STDOUT_FILENO);
  const int failed =
      ::posix_spawnp(&m_pid, words[0].c_str(), &files, nullptr, pointers(words).data(), pointers(variables).data());
  posix_spawn_file_actions_destroy(&files);
  ::close(input[0]);
  ::close(output[1]);
  m_input = input[1];
  m_output = output[0];
  if (failed != 0) throw std::runtime_error(words[0] + ": " + std::strerror(failed));
}

Process::~Process() {
  if (m_pid != 0) kill();
  finish();
  ::close(m_output);
}

std::string Process::line() {
  std::string text;
  for (char byte = 0; ::read(m_output, &byte, 1) == 1 && byte != '\n';) text += byte;
  return text;
}

void Process::kill() const {
  ::kill(m_pid, SIGKILL);
}

void Process::closeInput() {
  if (m_input >= 0) ::close(std::exchange(m_input, -1));
}

int Process::finish() {
  closeInput();
  if (m_pid == 0) return 0;
  int status = 0;
  ::waitpid(std::exchange(m_pid, 0), &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool Detail::says(const std::string& text) const {
  return std::ranges::any_of(items, [&](const auto& item) { return item.text.value_or("").contains(text); });
}

const wire::TranscriptItem& Detail::last(const std::string& type) const {
  const auto found = std::ranges::find(items.rbegin(), items.rend(), type, &wire::TranscriptItem::type);
  if (found == items.rend()) throw std::runtime_error("there is no " + type);
  return *found;
}

std::string RealAgentTest::program() const {
  // Another version of it, for comparing.
  if (const char* named = std::getenv("VARNEL_AGENT_PROGRAM")) return named;
  std::error_code error;
  const std::filesystem::recursive_directory_iterator entries(VARNEL_AGENT_FOLDER, error);
  for (const auto& entry : entries) {
    if (entry.path().filename() == "codex" && entry.path().parent_path().filename() == "bin") return entry.path();
  }
  return {};
}

std::vector<std::string> RealAgentTest::environment() const {
  return {"CODEX_HOME=" + home.string(), "TMPDIR=/var/tmp"};
}

void RealAgentTest::SetUp() {
  if (program().empty()) {
    std::cerr << "SKIPPED LOUDLY: the real agent is not in " VARNEL_AGENT_FOLDER "; scripts/fetch-agent says why\n";
    GTEST_SKIP() << "no agent";
  }
  home = folder.path() / "home";
  work = folder.path() / "work";
  std::filesystem::create_directories(work / ".git");
  std::ofstream(work / ".git/HEAD") << "ref: refs/heads/main\n";
  memory = store::Store::open(":memory:", folder.path()).value();
  startModel();
  startBridge();
}

void RealAgentTest::TearDown() {
  stopBridge();
  killServer();
}

void RealAgentTest::startModel(const std::vector<std::string>& options) {
  model.reset();
  std::vector<std::string> words{"python3", VARNEL_SUPPORT_FOLDER "/scripted_model.py", "--home", home.string()};
  words.insert(words.end(), options.begin(), options.end());
  model = std::make_unique<Process>(std::move(words), std::vector<std::string>(), folder.path());
  ASSERT_FALSE(model->line().empty());
}

void RealAgentTest::startBridge() {
  bridge = std::make_unique<support::RunningBridge>(http::Limits{}, [this](auto executor) {
    return std::make_unique<CodexAgent>(
        executor, memory->agentMemory,
        CodexOptions{.installation = {.command = program(), .home = home, .log = folder.path() / "agent.log"},
                     .version = "1",
                     .projects = {work.string()},
                     .now = {},
                     .log = [](const std::string& line) { std::cerr << "agent: " << line << '\n'; }});
  });
  token = bridge->pair();
}

void RealAgentTest::stopBridge() {
  bridge.reset();
}

std::optional<pid_t> RealAgentTest::serverProcess() const {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const auto path = Installation{.command = {}, .home = home, .log = {}}.socket().string();
  std::ranges::copy(path, address.sun_path);
  std::optional<pid_t> process;
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    process = static_cast<pid_t>(std::stol(serverIdOf(socket)));
  }
  ::close(socket);
  return process;
}

void RealAgentTest::killServer() {
  if (home.empty()) return;
  if (const auto process = serverProcess()) ::kill(*process, SIGKILL);
}

support::Response RealAgentTest::get(const std::string& path) {
  return support::send(bridge->port(), {.path = path, .token = token});
}

support::Response RealAgentTest::post(const std::string& path, const JSONValue& body) {
  return support::send(bridge->port(), {.method = "POST",
                                        .path = path,
                                        .token = token,
                                        .body = json::write(body).value(),
                                        .headers = {{"Idempotency-Key", "KEY-" + std::to_string(++keys)}}});
}

support::Response RealAgentTest::remove(const std::string& path) {
  return support::send(bridge->port(), {.method = "DELETE", .path = path, .token = token});
}

Object RealAgentTest::message(const std::string& text, const std::string& mode) {
  return {{"text", text},
          {"mode", mode},
          {"model", "gpt-5.5"},
          {"reasoningEffort", "medium"},
          {"serviceTier", "default"},
          {"attachments", JSONValue::Array()}};
}

std::string RealAgentTest::begin(const std::string& prompt, const std::string& policy, const std::string& sandbox) {
  const auto response = post("/v1/sessions", Object{{"cwd", work.string()},
                                                    {"mode", "default"},
                                                    {"model", "gpt-5.5"},
                                                    {"reasoningEffort", "medium"},
                                                    {"sandbox", sandbox},
                                                    {"approvalPolicy", policy},
                                                    {"acknowledgeHighRisk", false},
                                                    {"prompt", prompt}});
  EXPECT_EQ(response.status, 200) << response.body;
  return wire::decode<wire::NewSessionResult>(response.body).value().threadId;
}

support::Response RealAgentTest::say(const std::string& id, const std::string& text, const std::string& mode,
                                     JSONValue::Array attachments) {
  auto body = message(text, mode);
  body["attachments"] = std::move(attachments);
  return post("/v1/sessions/" + id + "/messages", body);
}

std::optional<Detail> RealAgentTest::look(const std::string& id) {
  const auto response = get("/v1/sessions/" + id);
  if (response.status == 503) return std::nullopt;
  if (response.status != 200) throw std::runtime_error(response.body);
  const auto read = wire::decodeSessionDetail(response.body).value();
  return Detail{.session = read.session->value(),
                .items = read.items->value(),
                .requests = read.pendingRequests->value(),
                .queued = read.queued->value()};
}

Detail RealAgentTest::detail(const std::string& id) {
  return look(id).value();
}

std::vector<wire::SessionSummary> RealAgentTest::sessions() {
  const auto response = get("/v1/sessions");
  if (response.status != 200) throw std::runtime_error(response.body);
  return wire::decode<wire::SessionsEnvelope>(response.body).value().sessions;
}

template <class Look>
void RealAgentTest::lookUntil(Look look) {
  support::EventClient events(bridge->port(), token, 0);
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!look()) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0 || !events.next(left)) {
      ADD_FAILURE() << "waited in vain";
      return;
    }
  }
}

Detail RealAgentTest::until(const std::string& id, const std::function<bool(const Detail&)>& holds) {
  Detail seen;
  lookUntil([&] {
    const auto now = look(id);
    if (now) seen = *now;
    return now && holds(seen);
  });
  return seen;
}

Detail RealAgentTest::untilState(const std::string& id, wire::CodexTurnState state) {
  return until(id, [&](const Detail& now) { return now.session.state == state; });
}

wire::SessionSummary RealAgentTest::untilListed(const std::function<bool(const wire::SessionSummary&)>& holds) {
  wire::SessionSummary found;
  lookUntil([&] {
    for (const auto& session : sessions()) {
      if (!holds(session)) continue;
      found = session;
      return true;
    }
    return false;
  });
  return found;
}

wire::PendingRequest RealAgentTest::untilAsked(const std::string& id) {
  const auto now = until(id, [](const Detail& seen) {
    return !seen.requests.empty() && seen.session.state == wire::CodexTurnState::NeedsInput;
  });
  return now.requests.empty() ? wire::PendingRequest() : now.requests.front();
}

support::Response RealAgentTest::answer(const wire::PendingRequest& request, JSONValue result) {
  return post("/v1/requests/" + request.id + "/resolve", Object{{"result", std::move(result)}});
}

}  // namespace varnel::agent::codex
