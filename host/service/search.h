// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "host/service/failure.h"
#include "host/service/indexer.h"
#include "host/store/search_index.h"

namespace varnel::service {

/// Finds conversations by any piece of their names, messages and tool output.
class Search {
 public:
  static constexpr std::size_t kPage = 20;

  Search(Indexer& indexer, store::SearchIndex& index) : m_indexer(indexer), m_index(index) {}

  /// A page of results as JSON text; later pages need the words that the cursor was made for.
  Task<std::string> find(std::string words, std::optional<std::string> cursor);

 private:
  Indexer& m_indexer;
  store::SearchIndex& m_index;
};

}  // namespace varnel::service
