// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/cli/control_client.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "core/json/text.h"
#include "host/store/state_directory.h"

namespace varnel::cli {

std::optional<ControlClient> ControlClient::connect(const std::filesystem::path& stateDirectory) {
  const auto path = store::StateDirectory::controlSocket(stateDirectory);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.native().size() >= sizeof(address.sun_path)) return std::nullopt;
  std::memcpy(address.sun_path, path.c_str(), path.native().size());
  ControlClient client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  if (client.m_socket < 0 || ::connect(client.m_socket, generic, sizeof(address)) != 0) return std::nullopt;
  return client;
}

ControlClient::ControlClient(ControlClient&& other) noexcept
    : m_socket(std::exchange(other.m_socket, -1)), m_received(std::move(other.m_received)) {}

ControlClient::~ControlClient() {
  if (m_socket >= 0) ::close(m_socket);
}

bool ControlClient::send(const json::JSONValue& request) {
  const auto line = json::write(request).value_or("{}") + "\n";
  return ::send(m_socket, line.data(), line.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(line.size());
}

std::expected<json::JSONValue, ControlClient::Silence> ControlClient::receive(std::chrono::milliseconds patience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  for (;;) {
    if (const auto newline = m_received.find('\n'); newline != std::string::npos) {
      auto value = json::parse(std::string_view(m_received).substr(0, newline));
      m_received.erase(0, newline + 1);
      if (!value) return std::unexpected(Silence::Closed);
      return std::move(*value);
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return std::unexpected(Silence::TimedOut);
    pollfd ready{.fd = m_socket, .events = POLLIN, .revents = 0};
    const int count = ::poll(&ready, 1, static_cast<int>(left.count()));
    if (count == 0 || (count < 0 && errno == EINTR)) continue;
    std::array<char, 4096> piece{};
    const auto size = count < 0 ? -1 : ::recv(m_socket, piece.data(), piece.size(), 0);
    if (size <= 0) return std::unexpected(Silence::Closed);
    m_received.append(piece.data(), static_cast<std::size_t>(size));
  }
}

std::string textMember(const json::JSONValue& value, std::string_view name) {
  const auto* member = value.member(name);
  return member != nullptr && member->string() != nullptr ? *member->string() : std::string();
}

}  // namespace varnel::cli
