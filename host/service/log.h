// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace varnel::service {

/// The one way to the log, which is standard error: a line of it. Never hand it a token, a secret, a header, a query
/// or a body.
void log(std::string_view line);

/// Text of others as it may stand on a terminal: control, invisible and direction-changing characters, and what is not
/// UTF-8, as escapes.
std::string printable(std::string_view text);

}  // namespace varnel::service
