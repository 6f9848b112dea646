// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/text.h"
#include "core/markdown/block.h"

/// The rules of the block parser word by word and as slow as that is, for comparing: a text is a list of user-perceived
/// characters, a line is copied for each question about it.
namespace varnel::markdown::naive {

using Text = std::vector<std::string>;

inline Text characters(std::string_view text) {
  Text result;
  for (; !text.empty(); text.remove_prefix(result.back().size())) result.emplace_back(base::firstCharacter(text));
  return result;
}

inline std::string joined(auto begin, auto end, std::string_view separator = "") {
  std::string result;
  for (auto at = begin; at != end; ++at) result += (at == begin ? "" : std::string(separator)) + *at;
  return result;
}

inline std::string trim(std::string_view text) {
  Text points;
  std::vector<bool> isSpace;
  while (!text.empty()) {
    const auto point = base::firstCodePoint(text);
    points.emplace_back(text.substr(0, point.length));
    isSpace.push_back(base::isHorizontalSpace(point.value));
    text.remove_prefix(point.length);
  }
  const auto first = std::ranges::find(isSpace, false) - isSpace.begin();
  auto last = static_cast<std::ptrdiff_t>(points.size());
  while (last > first && isSpace[static_cast<std::size_t>(last - 1)]) --last;
  return joined(points.begin() + first, points.begin() + last);
}

inline Text withoutWhiteSpace(Text text, const std::string& also = "") {
  std::erase_if(text,
                [&](const std::string& c) { return c == also || base::isWhiteSpace(base::firstCodePoint(c).value); });
  return text;
}

inline bool beginsWith(const std::string& line, const Text& prefix) {
  const Text text = characters(line);
  return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin());
}

inline Text split(const Text& text, const std::string& at) {
  Text pieces(1);
  for (const std::string& c : text) {
    if (c == at) {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

/// The marker, or nothing.
inline std::string fence(const std::string& line) {
  for (const std::string marker : {"```", "~~~"}) {
    if (beginsWith(trim(line), characters(marker))) return marker;
  }
  return {};
}

inline bool isHeading(const std::string& line, Heading& out) {
  const Text text = characters(trim(line));
  const auto end = std::ranges::find_if(text, [](const std::string& c) { return c != "#"; });
  out.level = end - text.begin();
  if (out.level < 1 || out.level > 6 || end == text.end() || *end != " ") return false;
  out.text = joined(end + 1, text.end());
  return true;
}

inline bool isRule(const std::string& line) {
  const Text rest = withoutWhiteSpace(characters(trim(line)));
  if (rest.size() < 3 || (rest[0] != "-" && rest[0] != "*" && rest[0] != "_")) return false;
  return std::ranges::count(rest, rest[0]) == static_cast<std::ptrdiff_t>(rest.size());
}

inline bool hasPipe(const std::string& line) {
  return std::ranges::count(characters(line), "|") > 0;
}

inline Text cells(const std::string& line) {
  Text pieces = split(characters(line), "|");
  for (std::string& piece : pieces) piece = trim(piece);
  if (pieces.front().empty()) pieces.erase(pieces.begin());
  if (!pieces.empty() && pieces.back().empty()) pieces.pop_back();
  return pieces;
}

inline bool isSeparator(const Text& cells) {
  return !cells.empty() && std::ranges::all_of(cells, [](const std::string& cell) {
    const Text rest = withoutWhiteSpace(characters(cell), ":");
    return rest.size() >= 3 && std::ranges::count(rest, "-") == static_cast<std::ptrdiff_t>(rest.size());
  });
}

inline bool isQuote(const std::string& line) {
  return beginsWith(trim(line), {">"});
}

inline std::int64_t indent(const std::string& line) {
  const Text text = characters(line);
  const auto end = std::ranges::find_if(text, [](const std::string& c) { return c != " "; });
  return std::min<std::int64_t>((end - text.begin()) / 2, 4);
}

inline bool isBullet(const std::string& line, TranscriptListItem& out) {
  const Text text = characters(trim(line));
  if (text.size() < 3 || (text[0] != "-" && text[0] != "*" && text[0] != "+") || text[1] != " ") return false;
  out = {.text = joined(text.begin() + 2, text.end()), .indent = indent(line), .number = std::nullopt};
  return true;
}

inline bool isNumbered(const std::string& line, TranscriptListItem& out) {
  const Text text = characters(trim(line));
  const auto space = std::ranges::find(text, " ");
  if (space == text.end() || space == text.begin() || (*(space - 1) != "." && *(space - 1) != ")")) return false;
  std::string number = joined(text.begin(), space - 1);
  if (number.starts_with('+')) number.replace(0, 1, number.starts_with("+-") ? "x" : "");
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (number.empty() || error != std::errc() || end != number.data() + number.size()) return false;
  out = {.text = joined(space + 1, text.end()), .indent = indent(line), .number = value};
  return true;
}

inline Text lines(std::string source) {
  for (std::size_t at = source.find("\r\n"); at != std::string::npos; at = source.find("\r\n", at)) source.erase(at, 1);
  std::ranges::replace(source, '\r', '\n');
  Text result(1);
  for (const char c : source) {
    if (c == '\n') {
      result.emplace_back();
    } else {
      result.back() += c;
    }
  }
  return result;
}

class Parser {
 public:
  explicit Parser(std::string_view source) : m_lines(lines(std::string(source))) {}

  std::vector<TranscriptMarkdownBlock> parse() {
    while (m_at < m_lines.size()) {
      if (trim(line()).empty()) {
        flush();
        ++m_at;
      } else if (!takeBlock()) {
        m_paragraph.push_back(m_lines[m_at++]);
      }
    }
    flush();
    return m_blocks;
  }

 private:
  [[nodiscard]] const std::string& line() const { return m_lines[m_at]; }
  [[nodiscard]] bool more() const { return m_at < m_lines.size(); }

  void flush() {
    if (!m_paragraph.empty()) m_blocks.emplace_back(Paragraph{joined(m_paragraph.begin(), m_paragraph.end(), "\n")});
    m_paragraph.clear();
  }

  bool add(TranscriptMarkdownBlock block) {
    flush();
    m_blocks.push_back(std::move(block));
    return true;
  }

  bool takeBlock() {
    Heading heading;
    if (!fence(line()).empty()) return takeCode();
    if (isHeading(line(), heading)) return ++m_at, add(heading);
    if (isRule(line())) return ++m_at, add(Rule{});
    if (m_at + 1 < m_lines.size() && hasPipe(line()) && isSeparator(cells(m_lines[m_at + 1]))) return takeTable();
    if (isQuote(line())) return takeQuote();
    if (UnorderedList list; takeItems(list.items, isBullet)) return add(list);
    if (OrderedList list; takeItems(list.items, isNumbered)) return add(list);
    return false;
  }

  bool takeCode() {
    const std::string marker = fence(line());
    const std::string language = trim(trim(line()).substr(marker.size()));
    Text text;
    for (++m_at; more() && fence(line()) != marker; ++m_at) text.push_back(line());
    ++m_at;
    return add(Code{.language = language.empty() ? std::nullopt : std::optional(language),
                    .text = joined(text.begin(), text.end(), "\n")});
  }

  bool takeTable() {
    Table table{.header = cells(line()), .rows = {}};
    for (m_at += 2; more() && !trim(line()).empty() && hasPipe(line()); ++m_at) table.rows.push_back(cells(line()));
    return add(table);
  }

  bool takeQuote() {
    Text text;
    for (; more() && isQuote(line()); ++m_at) text.push_back(trim(trim(line()).substr(1)));
    return add(Quote{joined(text.begin(), text.end(), "\n")});
  }

  bool takeItems(std::vector<TranscriptListItem>& items, auto isItem) {
    TranscriptListItem item;
    for (; more() && isItem(line(), item); ++m_at) items.push_back(item);
    return !items.empty();
  }

  Text m_lines;
  std::size_t m_at = 0;
  Text m_paragraph;
  std::vector<TranscriptMarkdownBlock> m_blocks;
};

}  // namespace varnel::markdown::naive
