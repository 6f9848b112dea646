// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "core/markdown/block.h"

/// What a single line is. Characters are user-perceived ones: a marker that carries a combining mark is no marker.
/// Where a trimmed line is asked for, it is the line after `base::trim`. Results are views into the line given.
namespace varnel::markdown {

struct CodeFence {
  std::string_view marker;                   ///< three backticks or three tildes
  std::optional<std::string_view> language;  ///< the rest of the line, trimmed, when there is any
};
std::optional<CodeFence> codeFence(std::string_view trimmedLine);

struct HeadingLine {
  std::int64_t level;
  std::string_view text;
};
std::optional<HeadingLine> markdownHeading(std::string_view trimmedLine);

/// Three or more of one of "-", "*" and "_", white space of any kind between them.
bool isMarkdownRule(std::string_view trimmedLine);

bool isQuoteLine(std::string_view trimmedLine);

/// Whether the line has a "|" that stands for itself.
bool hasPipe(std::string_view line);

/// Appends the texts between the pipes of a raw line, trimmed; one empty piece at each end is left out. False, and
/// nothing appended, when no "|" of the line stands for itself.
bool appendTableCells(std::string_view line, std::vector<std::string_view>& cells);
/// Whether a raw line has cells and they make a separator.
bool isTableSeparatorLine(std::string_view line);

/// What a `TranscriptListItem` is made of.
struct ListItemView {
  std::string_view text;
  std::int64_t indent = 0;
  std::optional<std::int64_t> number;
};
/// Both take a raw line.
std::optional<ListItemView> unorderedListItemView(std::string_view line);
std::optional<ListItemView> orderedListItemView(std::string_view line);
std::optional<TranscriptListItem> unorderedListItem(std::string_view line);
std::optional<TranscriptListItem> orderedListItem(std::string_view line);

/// The nesting level that the leading spaces of a raw line stand for, 0 to 4.
std::int64_t listIndent(std::string_view line);

}  // namespace varnel::markdown
