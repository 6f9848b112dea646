// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "core/markdown/block.h"

namespace varnel::markdown {

/// Splits a message into blocks by its lines alone; inline markdown stays in the texts. Never fails: any text has
/// blocks, the empty one none. One forward pass; each line is looked at a bounded number of times.
std::vector<TranscriptMarkdownBlock> parseTranscriptMarkdown(std::string_view source);

}  // namespace varnel::markdown
