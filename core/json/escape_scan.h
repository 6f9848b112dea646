// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

namespace varnel::json::detail {

/// Inside a string, passes over text and as many escapes of the commonest kinds (`\n`, `\t`, `\"`, `\\`) as it can,
/// without a branch for each: their distances cannot be predicted. Ends at the string's closing quote, at another kind
/// of escape, at a control character or anywhere near the end of the text, never between a backslash and its letter.
/// Uses what vectors the processor has; without any it stays where it is.
const char* skipCommonEscapes(const char* p, const char* end);

}  // namespace varnel::json::detail
