// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace varnel::inspect {

/// What the command was asked, as far as it means the same for every subject.
struct CommandLine {
  std::string subject;
  std::vector<std::string> parameters;  ///< what stands after the subject
  bool lines = false;
  bool help = false;
  std::optional<std::string> baseURL;
  std::optional<std::string> token;  ///< from --token or out of the file that --token-file names
  std::string deviceId = "varnel-inspect";
  std::int64_t after = 0;
  std::optional<std::int64_t> count;
  std::optional<std::string> stateDirectory;  ///< where what is saved outlives the run
  std::optional<std::string> open;            ///< a conversation
  std::optional<double> seconds;              ///< how long to follow
};

/// Fails with what is wrong about it. Reads the token's file.
std::expected<CommandLine, std::string> parseCommandLine(const std::vector<std::string>& words);

}  // namespace varnel::inspect
