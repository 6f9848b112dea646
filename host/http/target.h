// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varnel::http {

/// What a request asks for. Segments and values are decoded; a "%2F" in an id is part of the id.
struct Target {
  std::vector<std::string> segments;
  std::vector<std::pair<std::string, std::string>> query;

  /// The first value of that name.
  [[nodiscard]] std::optional<std::string> value(std::string_view name) const;
};

/// Nothing unless the text is a path from the root with sound percent-encoding and UTF-8 behind it.
std::optional<Target> parseTarget(std::string_view text);

}  // namespace varnel::http
