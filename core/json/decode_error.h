// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace varnel::json {

/// Why a JSON text is not the value that was asked for, and where.
struct DecodeError {
  /// Members and indices from the top, as in `sessions[3].state`; empty at the top itself.
  std::string path;
  /// What is wrong there, in English, without the path: `unknown value "x"`, `missing`, `expected a string, found a
  /// number`.
  std::string reason;

  /// The text for people and logs: `sessions[3].state: unknown value "x"`. Holds at most a short, escaped piece of the
  /// input, so it may be shown as it stands.
  [[nodiscard]] std::string message() const;

  /// Puts a member or an index in front of the path; used while a failure travels outwards.
  void prependMember(std::string_view name);
  void prependIndex(std::size_t index);

  bool operator==(const DecodeError&) const = default;
};

}  // namespace varnel::json
