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

/// The size of the white space character at the start of a text, 0 when another character stands there.
std::size_t whiteSpaceSize(std::string_view text) {
  return base::isWhiteSpace(base::firstCodePoint(text).value) ? base::firstCharacter(text).size() : 0;
}

/// Counts the characters of a text, white space and `skipped` left out, as long as each of them is `wanted`. Nothing
/// when one is not.
std::optional<std::size_t> countOnly(std::string_view text, char wanted, char skipped) {
  const auto isMark = [&](char c) { return c == wanted || c == skipped; };
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size();) {
    while (at + 1 < text.size() && (isMark(text[at]) || text[at] == ' ') && base::isAscii(text[at + 1])) {
      count += text[at++] == wanted ? 1U : 0U;
    }
    // White space never joins a mark, and whatever else follows one is not wanted, joined or not.
    const std::string_view rest = text.substr(at);
    const bool mark = isMark(rest.front()) && (rest.size() == 1 || whiteSpaceSize(rest.substr(1)) > 0);
    const std::size_t size = mark ? 1 : whiteSpaceSize(rest);
    if (size == 0) return std::nullopt;
    count += mark && rest.front() == wanted ? 1U : 0U;
    at += size;
  }
  return count;
}

std::optional<TranscriptListItem> owned(const std::optional<ListItemView>& item) {
  if (!item) return std::nullopt;
  return TranscriptListItem{.text = std::string(item->text), .indent = item->indent, .number = item->number};
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
  return countOnly(marks, marks.front(), marks.front()).value_or(0) >= kFewestMarks;
}

bool isQuoteLine(std::string_view trimmedLine) {
  return isAt(trimmedLine, 0, '>');
}

bool hasPipe(std::string_view line) {
  return findPipe(line, 0) != std::string_view::npos;
}

bool appendTableCells(std::string_view line, std::vector<std::string_view>& cells) {
  std::size_t end = findPipe(line, 0);
  if (end == std::string_view::npos) return false;
  std::size_t begin = 0;
  for (; end != std::string_view::npos; end = findPipe(line, begin)) {
    const std::string_view cell = base::trim(line.substr(begin, end - begin));
    if (begin > 0 || !cell.empty()) cells.push_back(cell);
    begin = end + 1;
  }
  const std::string_view last = base::trim(line.substr(begin));
  if (!last.empty()) cells.push_back(last);
  return true;
}

namespace {

bool isTableSeparatorCell(std::string_view cell) {
  return countOnly(cell, '-', ':').value_or(0) >= kFewestMarks;
}

}  // namespace

bool isTableSeparatorLine(std::string_view line) {
  bool found = false;
  for (std::size_t begin = 0; begin <= line.size();) {
    std::size_t end = begin;
    std::size_t dashes = 0;
    for (; end < line.size() && (line[end] == '-' || line[end] == ':'); ++end) dashes += line[end] == '-' ? 1U : 0U;
    const bool plain = end == line.size() || (line[end] == '|' && base::standsAlone(line, end));
    if (!plain) end = std::min(findPipe(line, begin), line.size());
    const std::string_view cell = line.substr(begin, end - begin);
    const bool outermost = begin == 0 || end == line.size();
    if (plain ? dashes >= kFewestMarks : isTableSeparatorCell(cell)) {
      found = true;
    } else if (!outermost || !base::trim(cell).empty()) {
      return false;
    }
    begin = end + 1;
  }
  return found;
}

std::optional<ListItemView> unorderedListItemView(std::string_view line) {
  const std::string_view trimmed = base::trim(line);
  if (trimmed.size() < 3 || !std::string_view("-*+").contains(trimmed.front()) || !isAt(trimmed, 1, ' ')) {
    return std::nullopt;
  }
  return ListItemView{.text = trimmed.substr(2), .indent = listIndent(line), .number = std::nullopt};
}

std::optional<ListItemView> orderedListItemView(std::string_view line) {
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
  return ListItemView{.text = trimmed.substr(end + 2), .indent = listIndent(line), .number = number};
}

std::optional<TranscriptListItem> unorderedListItem(std::string_view line) {
  return owned(unorderedListItemView(line));
}

std::optional<TranscriptListItem> orderedListItem(std::string_view line) {
  return owned(orderedListItemView(line));
}

std::int64_t listIndent(std::string_view line) {
  constexpr std::int64_t kSpacesALevel = 2;
  constexpr std::int64_t kDeepest = 4;
  if (!line.starts_with(' ')) return 0;
  std::size_t spaces = std::min(line.find_first_not_of(' '), line.size());
  if (spaces > 0 && !base::standsAlone(line, spaces - 1)) --spaces;
  return std::min(static_cast<std::int64_t>(spaces) / kSpacesALevel, kDeepest);
}

}  // namespace varnel::markdown
