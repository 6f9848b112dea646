// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/markdown.h"

#include <boost/describe/class.hpp>
#include <cstdint>
#include <variant>

#include "core/json/record_codec.h"
#include "core/markdown/inline.h"
#include "core/markdown/parse_blocks.h"
#include "tools/inspect/encoded.h"

namespace varnel::markdown {

BOOST_DESCRIBE_STRUCT(TranscriptListItem, (), (text, indent, number))

}  // namespace varnel::markdown

namespace varnel::inspect {

namespace {

/// A block of any kind, with the members that its kind has.
struct AnyBlock {
  std::string kind;
  std::optional<std::int64_t> level;
  std::optional<std::string> language;
  std::optional<std::string> text;
  std::optional<std::vector<markdown::TranscriptListItem>> items;
  std::optional<std::vector<std::string>> header;
  std::optional<std::vector<std::vector<std::string>>> rows;
};
BOOST_DESCRIBE_STRUCT(AnyBlock, (), (kind, level, language, text, items, header, rows))

struct Run {
  std::string text;
  std::vector<std::string> styles;
  std::optional<std::string> link;
};
BOOST_DESCRIBE_STRUCT(Run, (), (text, styles, link))

struct ToAnyBlock {
  AnyBlock operator()(const markdown::Paragraph& block) const { return {.kind = "paragraph", .text = block.text}; }
  AnyBlock operator()(const markdown::Heading& block) const {
    return {.kind = "heading", .level = block.level, .text = block.text};
  }
  AnyBlock operator()(const markdown::UnorderedList& block) const {
    return {.kind = "unorderedList", .items = block.items};
  }
  AnyBlock operator()(const markdown::OrderedList& block) const {
    return {.kind = "orderedList", .items = block.items};
  }
  AnyBlock operator()(const markdown::Code& block) const {
    return {.kind = "code", .language = block.language, .text = block.text};
  }
  AnyBlock operator()(const markdown::Quote& block) const { return {.kind = "quote", .text = block.text}; }
  AnyBlock operator()(const markdown::Table& block) const {
    return {.kind = "table", .header = block.header, .rows = block.rows};
  }
  AnyBlock operator()(const markdown::Rule&) const { return {.kind = "rule"}; }
};

Outcome blocks(std::string_view input) {
  std::vector<AnyBlock> result;
  for (const auto& block : markdown::parseTranscriptMarkdown(input)) result.push_back(std::visit(ToAnyBlock(), block));
  return encoded(result);
}

Outcome inlineRuns(std::string_view input) {
  std::vector<Run> result;
  for (const markdown::InlineRun& run : markdown::inlineMarkdown(input)) {
    std::vector<std::string> styles;
    if (run.styles.emphasis) styles.emplace_back("emphasis");
    if (run.styles.strong) styles.emplace_back("strong");
    if (run.styles.code) styles.emplace_back("code");
    if (run.styles.strikethrough) styles.emplace_back("strikethrough");
    result.push_back(
        {.text = run.text, .styles = std::move(styles), .link = run.link ? std::optional(*run.link) : std::nullopt});
  }
  return encoded(result);
}

}  // namespace

std::optional<Converter> blocksConverter(const std::vector<std::string>& parameters) {
  if (!parameters.empty()) return std::nullopt;
  return blocks;
}

std::optional<Converter> inlineConverter(const std::vector<std::string>& parameters) {
  if (!parameters.empty()) return std::nullopt;
  return inlineRuns;
}

}  // namespace varnel::inspect
