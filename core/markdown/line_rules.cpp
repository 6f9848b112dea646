// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/line_rules.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "core/base/text.h"

namespace varnel::markdown {

namespace {

/// Whether the character at `at` is exactly `c`.
bool isAt(std::string_view text, std::size_t at, char c) {
  return at < text.size() && text[at] == c && base::standsAlone(text, at);
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The place of the first "|" that stands for itself, or npos.
std::size_t findPipe(std::string_view line, std::size_t from) {
  std::size_t at = line.find('|', from);
  while (at != std::string_view::npos && !base::standsAlone(line, at)) at = line.find('|', at + 1);
  return at;
}

/// Counts the characters of a text, white space and `skipped` left out, as long as each of them is `wanted`. Nothing
/// when one is not.
std::optional<std::size_t> countOnly(std::string_view text, char wanted, std::optional<char> skipped) {
  std::size_t count = 0;
  while (!text.empty()) {
    const std::string_view character = base::firstCharacter(text);
    text.remove_prefix(character.size());
    const bool single = character.size() == 1;
    if (single && character.front() == wanted) {
      ++count;
    } else if (!(single && character.front() == skipped) &&
               !base::isWhiteSpace(base::firstCodePoint(character).value)) {
      return std::nullopt;
    }
  }
  return count;
}

constexpr std::size_t kFewestMarks = 3;

}  // namespace

std::optional<CodeFence> codeFence(std::string_view trimmedLine) {
  const std::string_view marker = trimmedLine.substr(0, 3);
  if ((marker != "```" && marker != "~~~") || !isAt(trimmedLine, 2, marker.front())) return std::nullopt;
  const std::string_view language = base::trim(trimmedLine.substr(3));
  return CodeFence{.marker = marker, .language = language.empty() ? std::nullopt : std::optional(language)};
}

std::optional<HeadingLine> markdownHeading(std::string_view trimmedLine) {
  constexpr std::size_t kDeepest = 6;
  const std::size_t level = std::min(trimmedLine.find_first_not_of('#'), trimmedLine.size());
  if (level < 1 || level > kDeepest || !isAt(trimmedLine, level, ' ')) return std::nullopt;
  return HeadingLine{.level = static_cast<std::int64_t>(level), .text = trimmedLine.substr(level + 1)};
}

bool isMarkdownRule(std::string_view trimmedLine) {
  // White space that trimming leaves (a form feed, a line separator) may stand in front of the first mark.
  std::string_view marks = trimmedLine;
  while (!marks.empty() && base::isWhiteSpace(base::firstCodePoint(marks).value)) {
    marks.remove_prefix(base::firstCharacter(marks).size());
  }
  if (marks.empty() || !std::string_view("-*_").contains(marks.front())) return false;
  return countOnly(marks, marks.front(), std::nullopt).value_or(0) >= kFewestMarks;
}

bool isQuoteLine(std::string_view trimmedLine) {
  return isAt(trimmedLine, 0, '>');
}

bool hasPipe(std::string_view line) {
  return findPipe(line, 0) != std::string_view::npos;
}

std::vector<std::string_view> tableCells(std::string_view line) {
  std::vector<std::string_view> cells;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t pipe = findPipe(line, begin);
    cells.push_back(base::trim(line.substr(begin, pipe == std::string_view::npos ? pipe : pipe - begin)));
    if (pipe == std::string_view::npos) break;
    begin = pipe + 1;
  }
  if (cells.front().empty()) cells.erase(cells.begin());
  if (!cells.empty() && cells.back().empty()) cells.pop_back();
  return cells;
}

bool isTableSeparator(const std::vector<std::string_view>& cells) {
  return !cells.empty() && std::ranges::all_of(cells, [](std::string_view cell) {
    return countOnly(cell, '-', ':').value_or(0) >= kFewestMarks;
  });
}

std::optional<TranscriptListItem> unorderedListItem(std::string_view line) {
  const std::string_view trimmed = base::trim(line);
  if (trimmed.size() < 3 || !std::string_view("-*+").contains(trimmed.front()) || !isAt(trimmed, 1, ' ')) {
    return std::nullopt;
  }
  return TranscriptListItem{.text = std::string(trimmed.substr(2)), .indent = listIndent(line), .number = std::nullopt};
}

std::optional<TranscriptListItem> orderedListItem(std::string_view line) {
  const std::string_view trimmed = base::trim(line);
  const std::size_t sign = trimmed.starts_with('-') || trimmed.starts_with('+') ? 1 : 0;
  std::size_t end = sign;
  while (end < trimmed.size() && isDigit(trimmed[end])) ++end;
  if (end == sign || !(isAt(trimmed, end, '.') || isAt(trimmed, end, ')')) || !isAt(trimmed, end + 1, ' ')) {
    return std::nullopt;
  }
  std::int64_t number = 0;
  const char* first = trimmed.data() + (trimmed.front() == '+' ? 1 : 0);
  if (std::from_chars(first, trimmed.data() + end, number).ec != std::errc{}) return std::nullopt;
  return TranscriptListItem{.text = std::string(trimmed.substr(end + 2)), .indent = listIndent(line), .number = number};
}

std::int64_t listIndent(std::string_view line) {
  constexpr std::int64_t kSpacesALevel = 2;
  constexpr std::int64_t kDeepest = 4;
  std::size_t spaces = std::min(line.find_first_not_of(' '), line.size());
  if (spaces > 0 && !base::standsAlone(line, spaces - 1)) --spaces;
  return std::min(static_cast<std::int64_t>(spaces) / kSpacesALevel, kDeepest);
}

}  // namespace varnel::markdown
