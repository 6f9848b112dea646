// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace varnel::agent::demo {

/// A file below content/, built into the program.
struct ContentFile {
  std::string_view name;  ///< its path below content/
  std::string_view text;
};

/// In the order of their names.
std::span<const ContentFile> contentFiles();

}  // namespace varnel::agent::demo
