// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/byte_positions.h"
#include "core/markdown/line_rules.h"

namespace varnel::markdown {

enum class BlockKind : std::uint8_t { Paragraph, Heading, UnorderedList, OrderedList, Code, Quote, Table, Rule };

/// Lines of a source, counted from 0.
struct LineRange {
  std::size_t begin = 0;
  std::size_t end = 0;
};

struct BlockView {
  BlockKind kind = BlockKind::Paragraph;
  std::uint8_t level = 0;     ///< of a heading
  std::string_view text;      ///< of a paragraph, a heading or code
  std::string_view language;  ///< of code, empty when it names none
  LineRange source;           ///< what it was made of, markers, fences and separators included
  std::size_t first = 0;      ///< where its items, lines or rows begin among all
  std::size_t count = 0;
};

/// The blocks of one message as views into it, or into this where the message has carriage returns. Parsing another
/// message invalidates them and reuses their memory. Takes just under three instructions a byte of what replies are
/// like (`scripts/bench markdown`, counted by callgrind), most of them on list items, table cells and line ends.
class BlockViews {
 public:
  /// Splits a message, which must outlive the views, into blocks by its lines alone. Any text has blocks, the empty one
  /// none. One forward pass; each line is looked at a bounded number of times. Lines that make no block are blank.
  void parse(std::string_view source);

  [[nodiscard]] std::span<const BlockView> blocks() const { return m_blocks; }
  /// Of a list.
  [[nodiscard]] std::span<const ListItemView> items(const BlockView& list) const {
    return std::span(m_items).subspan(list.first, list.count);
  }
  /// Of a quote, without their markers.
  [[nodiscard]] std::span<const std::string_view> lines(const BlockView& quote) const {
    return std::span(m_pieces).subspan(quote.first, quote.count);
  }
  /// Of a table: the header is row 0 of `count`.
  [[nodiscard]] std::span<const std::string_view> cells(const BlockView& table, std::size_t row) const {
    const Row& found = m_rows[table.first + row];
    return std::span(m_pieces).subspan(found.first, found.count);
  }

 private:
  friend class BlockScanner;

  struct Row {
    std::size_t first = 0;
    std::size_t count = 0;
  };

  base::BytePositions m_lineEnds;
  std::string m_text;  ///< the message, where its line ends had to be changed
  std::vector<BlockView> m_blocks;
  std::vector<ListItemView> m_items;
  std::vector<Row> m_rows;
  std::vector<std::string_view> m_pieces;  ///< cells and lines of quotes
};

}  // namespace varnel::markdown
