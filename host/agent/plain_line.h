// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace varnel::agent {

/// The first line of a markdown text that says something, without its marks, at most 160 code points.
std::string plainLine(std::string_view markdown);

/// On one line, at most so many code points, with an ellipsis where it was cut.
std::string excerpt(std::string_view text, std::size_t codePoints);

}  // namespace varnel::agent
