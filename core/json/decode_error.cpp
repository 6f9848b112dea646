// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/decode_error.h"

namespace varnel::json {

std::string DecodeError::message() const {
  return path.empty() ? reason : path + ": " + reason;
}

void DecodeError::prependMember(std::string_view name) {
  // A path that goes on with an index needs no dot.
  const bool joins = !path.empty() && path.front() != '[';
  path.insert(0, std::string(name) + (joins ? "." : ""));
}

void DecodeError::prependIndex(std::size_t index) {
  const bool joins = !path.empty() && path.front() != '[';
  path.insert(0, "[" + std::to_string(index) + "]" + (joins ? "." : ""));
}

}  // namespace varnel::json
