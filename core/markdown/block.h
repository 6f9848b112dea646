// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace varnel::markdown {

struct TranscriptListItem {
  std::string text;                    ///< after the marker, inline markdown still unparsed
  std::int64_t indent = 0;             ///< 0 to 4
  std::optional<std::int64_t> number;  ///< as written; absent for bullets

  bool operator==(const TranscriptListItem&) const = default;
};

struct Paragraph {
  std::string text;
  bool operator==(const Paragraph&) const = default;
};
struct Heading {
  std::int64_t level = 1;  ///< 1 to 6
  std::string text;
  bool operator==(const Heading&) const = default;
};
struct UnorderedList {
  std::vector<TranscriptListItem> items;
  bool operator==(const UnorderedList&) const = default;
};
struct OrderedList {
  std::vector<TranscriptListItem> items;
  bool operator==(const OrderedList&) const = default;
};
struct Code {
  std::optional<std::string> language;
  std::string text;
  bool operator==(const Code&) const = default;
};
struct Quote {
  std::string text;
  bool operator==(const Quote&) const = default;
};
/// Rows may be shorter or longer than the header and each other.
struct Table {
  std::vector<std::string> header;
  std::vector<std::vector<std::string>> rows;
  bool operator==(const Table&) const = default;
};
struct Rule {
  bool operator==(const Rule&) const = default;
};

/// One piece of a message, of one of a small fixed set of kinds.
using TranscriptMarkdownBlock = std::variant<Paragraph, Heading, UnorderedList, OrderedList, Code, Quote, Table, Rule>;

}  // namespace varnel::markdown
