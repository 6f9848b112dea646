// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "core/markdown/inline.h"

namespace varnel::markdown {

/// Runs in a form that a table of cases can hold: each in braces after the letters of its styles ("e", "s", "c" and
/// "~"), a link in parentheses behind it. A single run without style or link stands as it is.
inline std::string notation(std::span<const InlineRun> runs) {
  std::string text;
  for (const InlineRun& run : runs) {
    const InlineStyles& styles = run.styles;
    if (styles == InlineStyles() && !run.link && runs.size() == 1) return run.text;
    text += std::string(styles.emphasis ? "e" : "") + (styles.strong ? "s" : "") + (styles.code ? "c" : "") +
            (styles.strikethrough ? "~" : "") + "{" + run.text + "}";
    if (run.link) text += "(" + *run.link + ")";
  }
  return text;
}

}  // namespace varnel::markdown
