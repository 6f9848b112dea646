// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/parse_blocks.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>

#include "core/base/text.h"
#include "core/markdown/line_rules.h"

namespace varnel::markdown {

namespace {

/// Lines of a text whose only line end is LF, one after the other. A line end at the very end is followed by one more,
/// empty line.
class Lines {
 public:
  explicit Lines(std::string_view text) : m_text(text) { find(0); }

  [[nodiscard]] bool done() const { return m_begin > m_text.size(); }
  [[nodiscard]] std::string_view line() const { return m_text.substr(m_begin, m_end - m_begin); }
  [[nodiscard]] std::string_view trimmed() const { return base::trim(line()); }
  [[nodiscard]] std::size_t begin() const { return m_begin; }
  [[nodiscard]] std::size_t end() const { return m_end; }
  /// The lines from `begin` up to the current one, left out, with the line ends between them.
  [[nodiscard]] std::string_view since(std::size_t begin) const {
    return begin == m_begin ? std::string_view() : m_text.substr(begin, m_begin - 1 - begin);
  }
  void advance() { find(m_end + 1); }
  [[nodiscard]] std::optional<std::string_view> next() const {
    if (m_end >= m_text.size()) return std::nullopt;
    Lines following = *this;
    following.advance();
    return following.line();
  }
  /// The first byte of the next line, or NUL; most lines cannot be a separator by that alone.
  [[nodiscard]] char nextByte() const { return m_end + 1 < m_text.size() ? m_text[m_end + 1] : '\0'; }

 private:
  void find(std::size_t begin) {
    m_begin = m_end = begin;
    if (begin >= m_text.size()) return;
    const void* end = std::memchr(m_text.data() + begin, '\n', m_text.size() - begin);
    m_end = end == nullptr ? m_text.size() : static_cast<std::size_t>(static_cast<const char*>(end) - m_text.data());
  }

  std::string_view m_text;
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
};

std::vector<std::string> owned(const std::vector<std::string_view>& cells) {
  return {cells.begin(), cells.end()};
}

/// CR LF and CR as LF.
std::string withLineFeedsAlone(std::string_view source) {
  std::string text;
  text.reserve(source.size());
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source[i] != '\r') {
      text.push_back(source[i]);
    } else if (i + 1 == source.size() || source[i + 1] != '\n') {
      text.push_back('\n');
    }
  }
  return text;
}

class BlockParser {
 public:
  explicit BlockParser(std::string_view text) : m_lines(text) {}

  std::vector<TranscriptMarkdownBlock> parse() {
    while (!m_lines.done()) {
      const std::string_view trimmed = m_lines.trimmed();
      if (trimmed.empty()) {
        flushParagraph();
        m_lines.advance();
      } else if (!takeBlock(trimmed)) {
        if (!m_paragraph) m_paragraph = m_lines.begin();
        m_lines.advance();
      }
    }
    flushParagraph();
    return std::move(m_blocks);
  }

 private:
  /// In the order in which the rules decide. Each leaves the lines after what it took.
  bool takeBlock(std::string_view trimmed) {
    return takeCode(trimmed) || takeHeading(trimmed) || takeRule(trimmed) || takeTable() || takeQuote(trimmed) ||
           takeList<UnorderedList, unorderedListItem>() || takeList<OrderedList, orderedListItem>();
  }

  void flushParagraph() {
    if (!m_paragraph) return;
    m_blocks.emplace_back(Paragraph{std::string(m_lines.since(*m_paragraph))});
    m_paragraph.reset();
  }

  template <class Block>
  void append(Block block) {
    m_blocks.emplace_back(std::move(block));
  }

  bool takeCode(std::string_view trimmed) {
    const auto fence = codeFence(trimmed);
    if (!fence) return false;
    flushParagraph();
    m_lines.advance();
    const std::size_t begin = m_lines.begin();
    const auto closes = [&] {
      const auto closing = codeFence(m_lines.trimmed());
      return closing && closing->marker == fence->marker;
    };
    while (!m_lines.done() && !closes()) m_lines.advance();
    append(Code{.language = fence->language ? std::optional(std::string(*fence->language)) : std::nullopt,
                .text = std::string(m_lines.since(begin))});
    m_lines.advance();
    return true;
  }

  bool takeHeading(std::string_view trimmed) {
    const auto heading = markdownHeading(trimmed);
    if (!heading) return false;
    flushParagraph();
    append(Heading{.level = heading->level, .text = std::string(heading->text)});
    m_lines.advance();
    return true;
  }

  bool takeRule(std::string_view trimmed) {
    if (!isMarkdownRule(trimmed)) return false;
    flushParagraph();
    append(Rule{});
    m_lines.advance();
    return true;
  }

  bool takeTable() {
    const char hint = m_lines.nextByte();
    const bool mayBeSeparator =
        static_cast<unsigned char>(hint) >= 0x80 || std::string_view("|:- \t\v\f").contains(hint);
    if (!mayBeSeparator || !hasPipe(m_lines.line())) return false;
    const auto next = m_lines.next();
    if (!next || !isTableSeparator(tableCells(*next))) return false;
    flushParagraph();
    Table table{.header = owned(tableCells(m_lines.line())), .rows = {}};
    m_lines.advance();
    m_lines.advance();
    for (; !m_lines.done() && hasPipe(m_lines.line()); m_lines.advance()) {
      table.rows.push_back(owned(tableCells(m_lines.line())));
    }
    append(std::move(table));
    return true;
  }

  bool takeQuote(std::string_view trimmed) {
    if (!isQuoteLine(trimmed)) return false;
    flushParagraph();
    Quote quote{std::string(base::trim(trimmed.substr(1)))};
    for (m_lines.advance(); !m_lines.done(); m_lines.advance()) {
      const std::string_view line = m_lines.trimmed();
      if (!isQuoteLine(line)) break;
      quote.text.append(1, '\n').append(base::trim(line.substr(1)));
    }
    append(std::move(quote));
    return true;
  }

  template <class List, std::optional<TranscriptListItem> (*ItemOf)(std::string_view)>
  bool takeList() {
    auto item = ItemOf(m_lines.line());
    if (!item) return false;
    flushParagraph();
    List list;
    for (; item; item = m_lines.done() ? std::nullopt : ItemOf(m_lines.line())) {
      list.items.push_back(*std::move(item));
      m_lines.advance();
    }
    append(std::move(list));
    return true;
  }

  Lines m_lines;
  std::optional<std::size_t> m_paragraph;  ///< where the paragraph under way begins
  std::vector<TranscriptMarkdownBlock> m_blocks;
};

}  // namespace

std::vector<TranscriptMarkdownBlock> parseTranscriptMarkdown(std::string_view source) {
  if (source.find('\r') == std::string_view::npos) return BlockParser(source).parse();
  const std::string text = withLineFeedsAlone(source);
  return BlockParser(text).parse();
}

}  // namespace varnel::markdown
