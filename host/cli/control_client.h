// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "core/json/value.h"

namespace varnel::cli {

/// The other end of `ControlServer`: a command's conversation with the bridge that runs with a state directory.
/// Blocks its thread.
class ControlClient {
 public:
  /// Nothing when no bridge runs there.
  static std::optional<ControlClient> connect(const std::filesystem::path& stateDirectory);

  ControlClient(ControlClient&& other) noexcept;
  ControlClient& operator=(ControlClient&&) = delete;
  ~ControlClient();

  /// False when the bridge has gone.
  bool send(const json::JSONValue& request);

  enum class Silence {
    TimedOut,  ///< the bridge has nothing to say yet
    Closed,    ///< the bridge has gone
  };
  std::expected<json::JSONValue, Silence> receive(std::chrono::milliseconds patience);

 private:
  explicit ControlClient(int socket) : m_socket(socket) {}
  int m_socket;
  std::string m_received;
};

/// The text member of that name; empty when there is none.
std::string textMember(const json::JSONValue& value, std::string_view name);

}  // namespace varnel::cli
