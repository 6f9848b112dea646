// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace varnel::base {

/// The text with everything that could deceive its reader made visible as "\u{HEX}": controls but line feed and tab,
/// what has no width or turns the direction of text, blanks that are no plain space, and code points that no font draws
/// (private, unassigned, not a character). A byte that is not UTF-8 becomes "\x{HEX}". For showing only, never for
/// sending.
std::string inPlainSight(std::string_view text);

}  // namespace varnel::base
