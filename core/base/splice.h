// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace varnel::base {

/// The place where a list changed: from `first` on, `removed` elements gave way to `inserted` others. All else stands
/// as it stood.
struct Splice {
  std::size_t first = 0;
  std::size_t removed = 0;
  std::size_t inserted = 0;

  bool operator==(const Splice&) const = default;
};

}  // namespace varnel::base
