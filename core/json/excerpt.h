// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace varnel::json {

/// A short, printable piece of a text for an error message, in quotes; everything but plain ASCII as `\u{...}`, so that
/// nothing in it can pass for something else.
std::string excerpt(std::string_view text);

}  // namespace varnel::json
