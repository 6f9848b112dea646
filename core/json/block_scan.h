// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "core/json/string_scan.h"

namespace varnel::json::detail {

/// How strings are passed over and copied 64 bytes at a time.
struct BlockKernel {
  /// Inside a string, passes over text and as many escapes as it can, without a branch for each of one letter (`\n`,
  /// `\"` and their like): their distances cannot be predicted. Ends at the string's closing quote, at a surrogate or
  /// what is no escape, at a control character or anywhere near the end of the text, never inside an escape. Sets
  /// `escaped` when it meets a backslash.
  const char* (*scan)(const char* p, const char* end, bool& escaped);

  /// Copies what stands between the quotes of a string that was found right, its escapes resolved. Stops anywhere near
  /// `readable`, to where the text goes on after the string. May write 64 bytes after what it copied.
  Copied (*copy)(Copied at, const char* end, const char* readable);
};

/// The best of what this processor can run.
const BlockKernel& blockKernel();
/// All of that, the plainest first.
std::vector<BlockKernel> blockKernels();

}  // namespace varnel::json::detail
