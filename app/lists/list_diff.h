// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <variant>
#include <vector>

/// How one list becomes another, row by row.
namespace varnel::lists {

struct RemoveRows {
  std::size_t first = 0;
  std::size_t count = 0;
  bool operator==(const RemoveRows&) const = default;
};

/// Takes one row out and puts it back so that it stands at `to`.
struct MoveRow {
  std::size_t from = 0;
  std::size_t to = 0;
  bool operator==(const MoveRow&) const = default;
};

/// The rows of the new list from `first` on, put at the same place.
struct InsertRows {
  std::size_t first = 0;
  std::size_t count = 0;
  bool operator==(const InsertRows&) const = default;
};

using ListEdit = std::variant<RemoveRows, MoveRow, InsertRows>;

/// For each row of the new list the row of the old one that it continues, each old row at most once; nothing for a
/// row that is new. Gives the edits that lead there, to be done in this order, moving as few rows as can be.
std::vector<ListEdit> editsFor(std::size_t oldSize, const std::vector<std::optional<std::size_t>>& origins);

}  // namespace varnel::lists
