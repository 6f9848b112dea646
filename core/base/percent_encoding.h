// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace varnel::base {

/// What a percent-encoding leaves as it is; everything else becomes "%XX" with upper-case digits, byte by byte.
enum class UrlSet {
  Path,        ///< unreserved, sub-delimiters, ":", "@" and "/" (RFC 3986 pchar and the slash)
  Query,       ///< Path and "?"
  Unreserved,  ///< letters, digits, "-", ".", "_", "~": for one value among several in a query
};

std::string percentEncode(std::string_view text, UrlSet set);

/// Encodes what may not stand in a path but keeps every "%XX" that is there already, so that text which an operation
/// has encoded is not encoded twice.
std::string percentEncodeMissing(std::string_view text, UrlSet set);

/// Nothing when a "%" is not followed by two hexadecimal digits. "+" stays a plus.
std::optional<std::string> percentDecode(std::string_view text);

}  // namespace varnel::base
