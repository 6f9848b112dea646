// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tools/inspect/command_line.h"

namespace varnel::inspect {

/// JSON text, or why there is none.
using Outcome = std::expected<std::string, std::string>;

/// From one input to its result.
using Converter = std::function<Outcome(std::string_view input)>;

inline constexpr int kExitOk = 0;
inline constexpr int kExitRefused = 1;
inline constexpr int kExitUsage = 2;

/// One thing that can be looked at: a row of the table in subjects.cpp. It either converts standard input, or talks to
/// a bridge and prints by itself.
struct Subject {
  enum class Input { JSON, Text, None };

  std::string_view name;
  std::string_view parameters;
  std::string_view purpose;
  Input input = Input::None;
  /// The converter for these parameters; nothing when they are not what the subject takes.
  std::optional<Converter> (*converter)(const std::vector<std::string>& parameters) = nullptr;
  /// Returns the exit status; kExitUsage without having printed anything makes the usage appear.
  int (*run)(const CommandLine& command) = nullptr;
};

std::span<const Subject> subjects();

std::string usage();

}  // namespace varnel::inspect
