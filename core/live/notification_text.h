// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace varnel::live {

/// Text of the agent or of the host for a place of one line: every run of white space and control characters becomes
/// one blank, signs that turn text around are left out, and what is longer than `longest` code points ends in "…".
std::string oneLine(std::string_view text, std::size_t longest = 300);

}  // namespace varnel::live
