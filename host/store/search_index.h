// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/wire/search.h"
#include "host/store/database.h"

namespace varnel::store {

/// The words of every conversation, archived ones too, for finding any piece of text in any case. Kept in step by
/// whoever reads the agent.
class SearchIndex {
 public:
  explicit SearchIndex(const Database& database) : m_database(database) {}

  struct Conversation {
    std::string id;
    std::optional<std::string> name;
    std::optional<std::string> cwd;
    double updatedAt = 0;
    bool archived = false;
  };
  struct Item {
    std::string id;
    std::string turnId;
    std::int64_t position = 0;
    std::string text;
  };

  /// One commit for all that is done while it lives.
  [[nodiscard]] Transaction batch() const { return Transaction(m_database); }
  /// True when the conversation is known as it is given: then its items need not be read again.
  [[nodiscard]] bool isCurrent(const Conversation& conversation) const;
  /// Before its items: the row that they hang on. `updatedAt` is kept as 0 until `finish`. Like `put` and `finish` part
  /// of the batch that is open, if one is.
  void begin(const Conversation& conversation);
  void put(std::string_view sessionId, std::span<const Item> items);
  /// After its items: forgets those that are gone, and marks the conversation as current.
  void finish(const Conversation& conversation, const std::unordered_set<std::string>& itemIds);
  /// Forgets conversations that are not among these.
  void keepOnly(const std::unordered_set<std::string>& sessionIds);

  /// Where a page begins: after this conversation.
  struct Position {
    double updatedAt = 0;
    std::string sessionId;
  };
  struct Page {
    std::vector<wire::ConversationSearchResult> results;
    std::optional<Position> next;
  };
  /// Most recently changed conversations first.
  [[nodiscard]] Page search(std::string_view text, const std::optional<Position>& after, std::size_t limit) const;

 private:
  void addOccurrences(std::string_view text, std::vector<wire::ConversationSearchResult>& results) const;

  const Database& m_database;
};

}  // namespace varnel::store
