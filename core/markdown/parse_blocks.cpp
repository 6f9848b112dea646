// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/parse_blocks.h"

#include "core/markdown/block_views.h"

namespace varnel::markdown {

namespace {

std::vector<TranscriptListItem> ownedItems(std::span<const ListItemView> views) {
  std::vector<TranscriptListItem> items;
  items.reserve(views.size());
  for (const ListItemView& view : views) {
    items.push_back({.text = std::string(view.text), .indent = view.indent, .number = view.number});
  }
  return items;
}

std::string joined(std::span<const std::string_view> lines) {
  std::size_t size = lines.size();
  for (const std::string_view line : lines) size += line.size();
  std::string text;
  text.reserve(size);
  for (const std::string_view line : lines) text.append(line).append(1, '\n');
  text.pop_back();
  return text;
}

Table ownedTable(const BlockViews& views, const BlockView& view) {
  const auto owned = [&](std::size_t row) {
    const auto cells = views.cells(view, row);
    return std::vector<std::string>(cells.begin(), cells.end());
  };
  Table table{.header = owned(0), .rows = {}};
  table.rows.reserve(view.count - 1);
  for (std::size_t row = 1; row < view.count; ++row) table.rows.push_back(owned(row));
  return table;
}

TranscriptMarkdownBlock owned(const BlockViews& views, const BlockView& view) {
  switch (view.kind) {
    case BlockKind::Paragraph:
      return Paragraph{std::string(view.text)};
    case BlockKind::Heading:
      return Heading{.level = view.level, .text = std::string(view.text)};
    case BlockKind::UnorderedList:
      return UnorderedList{ownedItems(views.items(view))};
    case BlockKind::OrderedList:
      return OrderedList{ownedItems(views.items(view))};
    case BlockKind::Code:
      return Code{.language = view.language.empty() ? std::nullopt : std::optional(std::string(view.language)),
                  .text = std::string(view.text)};
    case BlockKind::Quote:
      return Quote{joined(views.lines(view))};
    case BlockKind::Table:
      return ownedTable(views, view);
    case BlockKind::Rule:
      break;
  }
  return Rule{};
}

}  // namespace

std::vector<TranscriptMarkdownBlock> parseTranscriptMarkdown(std::string_view source) {
  BlockViews views;
  views.parse(source);
  std::vector<TranscriptMarkdownBlock> blocks;
  blocks.reserve(views.blocks().size());
  for (const BlockView& view : views.blocks()) blocks.push_back(owned(views, view));
  return blocks;
}

}  // namespace varnel::markdown
