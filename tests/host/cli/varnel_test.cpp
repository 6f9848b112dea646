// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// The command itself, run as a user runs it: serve, pair, devices; its files, its exit statuses, its output.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <sstream>

#include "core/json/text.h"
#include "core/wire/bodies.h"
#include "core/wire/codec.h"
#include "core/wire/event.h"
#include "core/wire/pairing.h"
#include "core/wire/session.h"
#include "tests/support/http_client.h"
#include "tests/support/temporary_directory.h"

namespace varnel::cli {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// A `varnel` of its own, its standard output in a pipe and its standard error in a file; killed with the test.
class Command {
 public:
  Command(const std::vector<std::string>& arguments, const std::filesystem::path& errors) {
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) throw std::runtime_error("no pipe");
    std::vector<std::string> words{VARNEL_BINARY};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::posix_spawn_file_actions_addclose(&actions, pipe[0]);
    ::posix_spawn(&m_process, VARNEL_BINARY, &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);
    m_output = pipe[0];
  }
  ~Command() {
    if (m_process > 0) {
      ::kill(m_process, SIGKILL);
      ::waitpid(m_process, nullptr, 0);
    }
    ::close(m_output);
  }
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  /// The next line of its output; empty when it ends or is silent for too long.
  std::string line() {
    while (!m_text.contains('\n')) {
      pollfd ready{.fd = m_output, .events = POLLIN, .revents = 0};
      std::array<char, 4096> piece{};
      if (::poll(&ready, 1, 20'000) <= 0) return {};
      const auto size = ::read(m_output, piece.data(), piece.size());
      if (size <= 0) return {};
      m_text.append(piece.data(), static_cast<std::size_t>(size));
    }
    const auto end = m_text.find('\n');
    std::string line = m_text.substr(0, end);
    m_text.erase(0, end + 1);
    return line;
  }
  void interrupt(int signal) const { ::kill(m_process, signal); }
  /// Its exit status, once it has ended by itself.
  int status() {
    int status = 0;
    ::waitpid(std::exchange(m_process, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t m_process = -1;
  int m_output = -1;
  std::string m_text;
};

class VarnelTest : public ::testing::Test {
 protected:
  std::vector<std::string> with(std::vector<std::string> words) {
    words.insert(words.end(), {"--state-dir", state.string()});
    return words;
  }
  std::unique_ptr<Command> start(const std::vector<std::string>& words) {
    return std::make_unique<Command>(with(words), errors);
  }
  /// Runs a command to its end; its status and its first line.
  std::pair<int, std::string> run(const std::vector<std::string>& words) {
    Command command(words, errors);
    auto line = command.line();
    while (!command.line().empty()) {
    }
    return {command.status(), line};
  }
  std::unique_ptr<Command> serve(std::vector<std::string> more = {}) {
    std::vector<std::string> words{"serve", "--agent", "demo", "--listen", "127.0.0.1:0", "--speed", "50"};
    words.insert(words.end(), more.begin(), more.end());
    auto serving = start(words);
    const auto line = serving->line();
    EXPECT_THAT(line, StartsWith("listening on http://127.0.0.1:")) << contentOf(errors);
    port = static_cast<std::uint16_t>(std::atoi(line.substr(line.rfind(':') + 1).c_str()));
    return serving;
  }
  wire::ClaimResult claim(const std::string& secret, const std::string& name) {
    const auto body = wire::encode(wire::ClaimBody{.secret = secret, .deviceName = name}).value();
    const auto response = support::send(port, {.method = "POST", .path = "/v1/pair/claim", .body = body});
    EXPECT_EQ(response.status, 200) << response.body;
    return wire::decode<wire::ClaimResult>(response.body).value();
  }

  varnel::testing::TemporaryDirectory folder;
  std::filesystem::path state = folder.path() / "state";
  std::filesystem::path errors = folder.path() / "errors";
  std::uint16_t port = 0;
};

TEST_F(VarnelTest, pairsAPhoneAndForgetsItAgain) {
  auto serving = serve();
  auto pairing = start({"pair", "--json"});
  const auto offer = json::parse(pairing->line()).value();
  ASSERT_NE(offer.member("expiresAt"), nullptr);
  const auto payload = wire::decode<wire::PairPayload>(*offer.member("payload")->string()).value();
  EXPECT_EQ(payload.version, 1);
  EXPECT_EQ(payload.baseURL.text(), "http://127.0.0.1:" + std::to_string(port));
  const auto claimed = claim(payload.secret, "My\x1b phone");
  EXPECT_EQ(pairing->line(), R"({"claimedBy":"My\u001B phone"})");
  EXPECT_EQ(pairing->status(), 0);

  EXPECT_EQ(support::send(port, {.path = "/v1/sessions", .token = claimed.token}).status, 200);
  support::EventClient stream(port, claimed.token, 0);
  const auto list = run(with({"devices", "list"}));
  EXPECT_THAT(list.second, HasSubstr(R"(My\u{1b} phone)"));
  EXPECT_EQ(run(with({"devices", "rename", claimed.deviceId, "Other name"})).first, 0);
  EXPECT_EQ(run(with({"devices", "revoke", "Other name"})).first, 0);
  EXPECT_TRUE(stream.closesWithin(std::chrono::seconds(1)));
  EXPECT_EQ(run(with({"devices", "revoke", "Other name"})).first, 1);
  EXPECT_EQ(support::send(port, {.path = "/v1/sessions", .token = claimed.token}).status, 401);
  EXPECT_EQ(run(with({"devices", "list", "--json"})).second, "[]");

  serving->interrupt(SIGTERM);
  EXPECT_EQ(serving->status(), 0);
  EXPECT_FALSE(std::filesystem::exists(state / "control.sock"));
  for (const auto& entry : std::filesystem::recursive_directory_iterator(state)) {
    EXPECT_EQ(static_cast<unsigned>(entry.status().permissions()) & 0077U, 0U) << entry.path();
    if (!entry.is_regular_file()) continue;
    EXPECT_THAT(contentOf(entry.path()), Not(HasSubstr(claimed.token))) << entry.path();
    EXPECT_THAT(contentOf(entry.path()), Not(HasSubstr(payload.secret))) << entry.path();
  }
  EXPECT_THAT(contentOf(errors), Not(HasSubstr(claimed.token)));
  EXPECT_THAT(contentOf(errors), Not(HasSubstr(payload.secret)));
}

TEST_F(VarnelTest, showsACodeThatIsReplacedByTheNext) {
  const auto serving = serve();
  auto first = start({"pair"});
  EXPECT_THAT(first->line(), StartsWith(R"({"version":1,"baseURL":"http://127.0.0.1:)"));
  for (int row = 0; row < 21; ++row) EXPECT_NE(first->line(), "") << row;
  EXPECT_THAT(first->line(), AnyOf("valid for 5:00", "valid for 4:59"));
  const auto second = start({"pair", "--png", (folder.path() / "code.png").string()});
  const auto payload = wire::decode<wire::PairPayload>(second->line()).value();
  EXPECT_EQ(first->status(), 1);
  EXPECT_THAT(contentOf(errors), HasSubstr("taken the place"));
  claim(payload.secret, "Phone");
  for (int row = 0; row < 22; ++row) second->line();
  EXPECT_EQ(second->line(), "claimed by Phone");
  EXPECT_EQ(second->status(), 0);
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "code.png"));
}

/// A `varnel` on a terminal of 80 by 24; killed with the test.
class TerminalCommand {
 public:
  explicit TerminalCommand(std::vector<std::string> words) : m_terminal(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    const winsize size{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
    if (::grantpt(m_terminal) != 0 || ::unlockpt(m_terminal) != 0 || ::ioctl(m_terminal, TIOCSWINSZ, &size) != 0) {
      throw std::runtime_error("no terminal");
    }
    words.insert(words.begin(), VARNEL_BINARY);
    std::vector<char*> argv;
    for (auto& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, ::ptsname(m_terminal), O_RDWR, 0);
    ::posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDOUT_FILENO);
    ::posix_spawn(&m_process, VARNEL_BINARY, &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
  }
  ~TerminalCommand() {
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    ::close(m_terminal);
  }
  TerminalCommand(const TerminalCommand&) = delete;
  TerminalCommand& operator=(const TerminalCommand&) = delete;

  /// All that it has written, once the mark is in it.
  const std::string& textUpTo(const std::string& mark) {
    while (!m_text.contains(mark)) {
      pollfd ready{.fd = m_terminal, .events = POLLIN, .revents = 0};
      std::array<char, 4096> piece{};
      if (::poll(&ready, 1, 20'000) <= 0) break;
      const auto size = ::read(m_terminal, piece.data(), piece.size());
      if (size <= 0) break;
      m_text.append(piece.data(), static_cast<std::size_t>(size));
    }
    return m_text;
  }

 private:
  int m_terminal;
  pid_t m_process = -1;
  std::string m_text;
};

/// How many rows of 80 columns a text takes, its control sequences left out.
std::size_t rowsOf(const std::string& text) {
  std::size_t rows = 1;
  std::size_t column = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\x1b') {
      i = text.find_first_of("mK", i);
    } else if (text[i] == '\n') {
      ++rows;
      column = 0;
    } else if (text[i] == '\r') {
      column = 0;
    } else if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U && ++column > 80) {
      ++rows;
      column = 1;
    }
  }
  return rows;
}

TEST_F(VarnelTest, pairingFitsATerminalAndCountsDown) {
  const auto serving = serve();
  TerminalCommand pairing(with({"pair"}));
  const auto shown = pairing.textUpTo("valid for ");
  EXPECT_LE(rowsOf(shown), 24U) << "the code scrolls away";
  EXPECT_THAT(pairing.textUpTo("valid for 4:58"), HasSubstr("\r\x1b[Kvalid for 4:58"));
  claim(wire::decode<wire::PairPayload>(shown.substr(0, shown.find('\r'))).value().secret, "Phone");
  EXPECT_THAT(pairing.textUpTo("claimed by"), HasSubstr("\r\x1b[Kclaimed by"));
}

TEST_F(VarnelTest, keepsWhatWasPairedAndPinnedOverAKill) {
  auto serving = serve();
  const auto offer = json::parse(start({"pair", "--json"})->line()).value();
  // The asker has gone: its secret went with it.
  const auto payload = wire::decode<wire::PairPayload>(*offer.member("payload")->string()).value();
  const auto late = support::send(port, {.method = "POST",
                                         .path = "/v1/pair/claim",
                                         .body = R"({"secret":")" + payload.secret + R"(","deviceName":"x"})"});
  EXPECT_EQ(late.status, 403);
  auto pairing = start({"pair", "--json"});
  const auto again = json::parse(pairing->line()).value();
  const auto token = claim(wire::decode<wire::PairPayload>(*again.member("payload")->string())->secret, "Phone").token;
  const auto sessions = [&] {
    return wire::decode<wire::SessionsEnvelope>(support::send(port, {.path = "/v1/sessions", .token = token}).body)
        ->sessions;
  };
  const auto last = sessions().back().id;
  const std::string pin = R"({"sessionId":")" + last + R"(","pin":true})";
  EXPECT_EQ(support::send(port, {.method = "POST", .path = "/v1/tracking", .token = token, .body = pin}).status, 200);
  support::EventClient before(port, token, 0);
  const auto seen = wire::decode<wire::LiveEvent>(before.next().value())->sequence;
  serving->interrupt(SIGKILL);
  serving->status();

  serving = serve();
  EXPECT_EQ(sessions().front().id, last);
  support::EventClient after(port, token, seen + 50);
  EXPECT_EQ(wire::decode<wire::LiveEvent>(after.next().value())->type, "snapshot.required");
}

TEST_F(VarnelTest, saysWhatIsWrongInOneSentence) {
  EXPECT_EQ(run({"--version"}), std::pair(0, std::string("varnel " VARNEL_VERSION)));
  EXPECT_EQ(run({"--help"}).first, 0);
  EXPECT_EQ(run({"serve", "--help"}).first, 0);
  EXPECT_EQ(run({"--nonsense"}).first, 2);
  EXPECT_EQ(run({"dance"}).first, 2) << "a word that is no command reaches the agent";
  EXPECT_EQ(run({"devices", "revoke"}).first, 2);
  EXPECT_EQ(run(with({"pair"})).first, 1);
  EXPECT_THAT(contentOf(errors), HasSubstr("Start one with: varnel serve"));
  std::filesystem::create_directory(state);
  EXPECT_EQ(run(with({"devices", "list"})).first, 1);
  EXPECT_THAT(contentOf(errors), HasSubstr("There is no state in"));
  EXPECT_TRUE(std::filesystem::is_empty(state)) << "a list makes state";
  for (const auto* url : {"http://a@b:1", "http://b?q", "http://b#f", "ftp://b", "b"}) {
    EXPECT_EQ(run(with({"serve", "--listen", "127.0.0.1:0", "--base-url", url})).first, 1) << url;
  }
  for (const auto* address : {"0.0.0.0:0", "[::]:0", "192.0.2.1:0"}) {
    EXPECT_EQ(run(with({"serve", "--listen", address})).first, 1) << address;
  }
  EXPECT_EQ(run(with({"serve", "--listen", "0.0.0.0:0", "--allow-remote"})).first, 1) << "no phone could be told where";
  EXPECT_EQ(run(with({"serve", "--agent", "nobody"})).first, 1);
  EXPECT_EQ(run(with({"serve", "--agent", "codex", "--agent-command", "/nowhere"})).first, 1);
  const auto serving = serve();
  EXPECT_EQ(run(with({"serve", "--listen", "127.0.0.1:0"})).first, 1) << "two bridges share a state directory";
}

/// An agent that says what it was called with, and whether its server listened by then.
constexpr std::string_view kFakeAgent = R"py(#!/usr/bin/env python3
import os, socket, sys, time
path = os.environ["CODEX_HOME"] + "/app-server-control/app-server-control.sock"
if sys.argv[1:2] == ["app-server"]:
    held = [fd for fd in range(3, 256) if os.path.exists(f"/proc/self/fd/{fd}")]
    os.makedirs(os.path.dirname(path), exist_ok=True)
    server = socket.socket(socket.AF_UNIX)
    server.bind(path)
    server.listen()
    while True:
        server.accept()[0].recv(1) or None
        with open(os.environ["CODEX_HOME"] + "/server.pid", "w") as file: file.write(f"{os.getpid()} {held}")
else:
    client = socket.socket(socket.AF_UNIX)
    client.connect(path)
    print("agent", *sys.argv[1:], flush=True)
)py";

TEST_F(VarnelTest, withoutACommandItBecomesTheAgentOnTheSharedServer) {
  const auto programs = state.parent_path() / "programs";
  const auto home = state.parent_path() / "home";
  std::filesystem::create_directories(programs);
  std::ofstream(programs / "codex") << kFakeAgent;
  std::filesystem::permissions(programs / "codex", std::filesystem::perms::owner_all);
  const std::string path = std::getenv("PATH");
  ::setenv("PATH", (programs.string() + ":" + path).c_str(), 1);
  ::setenv("CODEX_HOME", home.c_str(), 1);
  EXPECT_EQ(run({}), std::pair(0, std::string("agent")));
  EXPECT_EQ(run({"--", "resume", "--last"}), std::pair(0, std::string("agent resume --last")));
  EXPECT_EQ(run({"resume"}).first, 2);
  ::setenv("PATH", path.c_str(), 1);
  ::unsetenv("CODEX_HOME");
  const auto process = contentOf(home / "server.pid");
  ASSERT_FALSE(process.empty());
  EXPECT_THAT(process, HasSubstr("[]")) << "it holds files of who started it";
  EXPECT_EQ(::kill(std::stoi(process), SIGKILL), 0) << "the server ended with who started it";
}

}  // namespace
}  // namespace varnel::cli
