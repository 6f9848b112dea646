// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace varnel::live {

/// A link into the application: "varnel://session/" and a conversation's id, or none for no conversation.
struct Link {
  std::optional<std::string> sessionId;
};

/// Nothing for every other address. Scheme and host are compared as written; the id is percent-decoded.
std::optional<Link> parseLink(std::string_view url);

}  // namespace varnel::live
