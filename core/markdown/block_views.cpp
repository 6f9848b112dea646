// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/block_views.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/base/text.h"

namespace varnel::markdown {

namespace {

// What a line may begin, by its first byte that is neither space nor tab.
constexpr unsigned kFence = 1U << 0U;
constexpr unsigned kHeading = 1U << 1U;
constexpr unsigned kRule = 1U << 2U;
constexpr unsigned kQuote = 1U << 3U;
constexpr unsigned kBullet = 1U << 4U;
constexpr unsigned kNumber = 1U << 5U;
constexpr unsigned kSeparator = 1U << 6U;  ///< of a table, by its very first byte
constexpr unsigned kAnything = 0xFF;

constexpr auto kBeginnings = [] {
  std::array<std::uint8_t, 256> beginnings{};
  const auto set = [&](std::string_view bytes, unsigned what) {
    for (const char c : bytes) {
      auto& beginning = beginnings.at(static_cast<unsigned char>(c));
      beginning = static_cast<std::uint8_t>(beginning | what);
    }
  };
  set("`~", kFence);
  set("#", kHeading);
  set("-*_", kRule);
  set(">", kQuote);
  set("-*+", kBullet);
  set("-+0123456789", kNumber);
  set("|-: \t", kSeparator);
  // White space that is no space or tab.
  set("\v\f", kAnything);
  // Beyond ASCII there may be white space in front of a separator.
  for (std::size_t c = 0x80; c < beginnings.size(); ++c) beginnings.at(c) = kSeparator;
  return beginnings;
}();

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

/// CR LF and CR as LF.
void putLineFeedsAlone(std::string_view source, std::string& text) {
  text.clear();
  text.reserve(source.size());
  while (!source.empty()) {
    const std::size_t plain = std::min(source.find('\r'), source.size());
    text += source.substr(0, plain);
    source.remove_prefix(plain);
    if (source.empty()) break;
    text += '\n';
    source.remove_prefix(source.starts_with("\r\n") ? 2 : 1);
  }
}

}  // namespace

/// Goes through a text whose only line end is LF, line by line. A line end at the very end is followed by one more,
/// empty line.
class BlockScanner {
 public:
  BlockScanner(std::string_view text, std::span<const std::size_t> lineEnds, BlockViews& out)
      : m_text(text), m_out(out), m_lineEnds(lineEnds), m_end(endOfLine(0)) {}

  void scan() {
    while (!done()) {
      const std::size_t first = firstNotBlank();
      if (first == m_end) {
        takeBlankLine();
      } else if (!takeBlock(first)) {
        if (m_paragraph.begin == kNone) m_paragraph = {.begin = m_begin, .line = m_number};
        advance();
      }
    }
    flushParagraph();
  }

 private:
  static constexpr std::size_t kNone = std::string_view::npos;

  struct Paragraph {
    std::size_t begin = kNone;
    std::size_t line = 0;
  };

  [[nodiscard]] bool done() const { return m_begin > m_text.size(); }
  [[nodiscard]] std::string_view line() const { return m_text.substr(m_begin, m_end - m_begin); }
  /// The end of the line where all is blank. Most lines have no indentation, most others one of several spaces.
  [[nodiscard]] std::size_t firstNotBlank() const {
    constexpr std::string_view kSpaces = "    ";
    std::size_t at = m_begin;
    if (at == m_end || m_text[at] > ' ') return at;
    while (m_end - at >= kSpaces.size() && std::memcmp(m_text.data() + at, kSpaces.data(), kSpaces.size()) == 0) {
      at += kSpaces.size();
    }
    while (at < m_end && isBlank(m_text[at])) ++at;
    return at;
  }
  /// The last line ends with the text.
  [[nodiscard]] std::size_t endOfLine(std::size_t number) const {
    return number < m_lineEnds.size() ? m_lineEnds[number] : m_text.size();
  }
  void advance() {
    m_begin = m_end + 1;
    ++m_number;
    m_end = endOfLine(m_number);
  }
  /// The lines from `begin` up to the current one, left out, with the line ends between them.
  [[nodiscard]] std::string_view since(std::size_t begin) const {
    return begin == m_begin ? std::string_view() : m_text.substr(begin, m_begin - 1 - begin);
  }

  void flushParagraph() {
    if (m_paragraph.begin == kNone) return;
    BlockView& block = m_out.m_blocks.emplace_back();
    block.text = since(m_paragraph.begin);
    block.source = {.begin = m_paragraph.line, .end = m_number};
    m_paragraph.begin = kNone;
  }

  bool takeBlankLine() {
    flushParagraph();
    advance();
    return true;
  }

  /// A block that begins at the current line.
  BlockView& add(BlockKind kind) {
    flushParagraph();
    BlockView& block = m_out.m_blocks.emplace_back();
    block.kind = kind;
    block.source = {.begin = m_number, .end = m_number};
    return block;
  }

  /// A line whose first byte that is neither space nor tab is at `first`. Leaves the lines after what it took, in the
  /// order in which the rules decide.
  bool takeBlock(std::size_t first) {
    const unsigned beginning = beginningAt(first);
    if (beginning == 0) return takeTable();
    const std::string_view trimmed = base::trim(line());
    if (trimmed.empty()) return takeBlankLine();
    return ((beginning & kFence) != 0 && takeCode(trimmed)) || ((beginning & kHeading) != 0 && takeHeading(trimmed)) ||
           ((beginning & kRule) != 0 && takeRule(trimmed)) || takeTable() ||
           ((beginning & kQuote) != 0 && takeQuote(trimmed)) ||
           ((beginning & kBullet) != 0 && takeList<unorderedListItemView>(BlockKind::UnorderedList)) ||
           ((beginning & kNumber) != 0 && takeList<orderedListItemView>(BlockKind::OrderedList));
  }

  [[nodiscard]] unsigned beginningAt(std::size_t first) const {
    const char c = m_text[first];
    if (base::isAscii(c)) return kBeginnings[static_cast<unsigned char>(c)];
    return base::isWhiteSpace(base::firstCodePoint(m_text.substr(first)).value) ? kAnything : 0U;
  }

  bool takeCode(std::string_view trimmed) {
    const auto fence = codeFence(trimmed);
    if (!fence) return false;
    BlockView& block = add(BlockKind::Code);
    block.language = fence->language.value_or(std::string_view());
    advance();
    const std::size_t begin = m_begin;
    while (!done() && !closes(*fence)) advance();
    block.text = since(begin);
    if (!done()) advance();
    block.source.end = m_number;
    return true;
  }

  [[nodiscard]] bool closes(const CodeFence& fence) const {
    const std::size_t at = firstNotBlank();
    if (at == m_end || (base::isAscii(m_text[at]) && m_text[at] != fence.marker.front())) return false;
    const auto closing = codeFence(base::trim(line()));
    return closing && closing->marker == fence.marker;
  }

  bool takeHeading(std::string_view trimmed) {
    const auto heading = markdownHeading(trimmed);
    if (!heading) return false;
    BlockView& block = add(BlockKind::Heading);
    block.level = static_cast<std::uint8_t>(heading->level);
    block.text = heading->text;
    block.source.end = m_number + 1;
    advance();
    return true;
  }

  bool takeRule(std::string_view trimmed) {
    if (!isMarkdownRule(trimmed)) return false;
    add(BlockKind::Rule).source.end = m_number + 1;
    advance();
    return true;
  }

  /// Whether the next line may be a separator by its first byte alone; most may not.
  [[nodiscard]] bool mayPrecedeSeparator() const {
    if (m_end + 1 >= m_text.size()) return false;
    return (kBeginnings[static_cast<unsigned char>(m_text[m_end + 1])] & kSeparator) != 0;
  }

  bool takeTable() { return mayPrecedeSeparator() && takeTableIfSeparated(); }

  bool takeTableIfSeparated() {
    if (!hasPipe(line())) return false;
    const std::size_t next = m_end + 1;
    if (!isTableSeparatorLine(m_text.substr(next, endOfLine(m_number + 1) - next))) return false;
    BlockView& block = add(BlockKind::Table);
    block.first = m_out.m_rows.size();
    addRow();
    advance();
    do {
      advance();
    } while (!done() && addRow());
    block.count = m_out.m_rows.size() - block.first;
    block.source.end = m_number;
    return true;
  }

  /// False at a line that is no row.
  bool addRow() {
    const std::size_t first = m_out.m_pieces.size();
    if (!appendTableCells(line(), m_out.m_pieces)) return false;
    m_out.m_rows.push_back({.first = first, .count = m_out.m_pieces.size() - first});
    return true;
  }

  bool takeQuote(std::string_view trimmed) {
    if (!isQuoteLine(trimmed)) return false;
    BlockView& block = add(BlockKind::Quote);
    block.first = m_out.m_pieces.size();
    do {
      m_out.m_pieces.push_back(base::trim(trimmed.substr(1)));
      advance();
      trimmed = done() ? std::string_view() : base::trim(line());
    } while (isQuoteLine(trimmed));
    block.count = m_out.m_pieces.size() - block.first;
    block.source.end = m_number;
    return true;
  }

  template <std::optional<ListItemView> (*ItemOf)(std::string_view)>
  bool takeList(BlockKind kind) {
    auto item = ItemOf(line());
    if (!item) return false;
    BlockView& block = add(kind);
    block.first = m_out.m_items.size();
    for (; item; item = done() ? std::nullopt : ItemOf(line())) {
      m_out.m_items.push_back(*item);
      advance();
    }
    block.count = m_out.m_items.size() - block.first;
    block.source.end = m_number;
    return true;
  }

  std::string_view m_text;
  BlockViews& m_out;
  std::span<const std::size_t> m_lineEnds;
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
  std::size_t m_number = 0;  ///< of the current line
  Paragraph m_paragraph;     ///< the one under way
};

void BlockViews::parse(std::string_view source) {
  m_blocks.clear();
  m_items.clear();
  m_rows.clear();
  m_pieces.clear();
  if (source.contains('\r')) {
    putLineFeedsAlone(source, m_text);
    source = m_text;
  }
  m_lineEnds.find(source, '\n');
  BlockScanner(source, m_lineEnds.all(), *this).scan();
}

}  // namespace varnel::markdown
