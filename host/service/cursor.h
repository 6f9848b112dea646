// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace varnel::service {

/// Where a page of a list begins: after the conversation that was changed then and has this id.
struct Cursor {
  double updatedAt = 0;
  std::string id;
  bool operator==(const Cursor&) const = default;
};

/// Opaque to the phone; bound to the list it belongs to (`scope`: which list, which words were searched).
std::string writeCursor(std::string_view scope, const Cursor& cursor);

/// Nothing for what `writeCursor` has not written for this scope.
std::optional<Cursor> readCursor(std::string_view scope, std::string_view text);

}  // namespace varnel::service
