// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::store {

class Database;

/// What the agent does not give back once its process has ended, kept for it by conversation.
class AgentMemory {
 public:
  explicit AgentMemory(const Database& database) : m_database(database) {}

  /// JSON texts of the agent's own making, by conversation.
  [[nodiscard]] std::map<std::string, std::string> threads() const;
  void keepThread(std::string_view threadId, std::string_view memory);

  struct Item {
    std::string id;
    std::string threadId;
    std::string turnId;
    double at = 0;                    ///< seconds since 1970, UTC
    std::optional<std::string> body;  ///< JSON text of one that the agent itself forgets
  };
  /// All in one commit; what is known of an item is replaced.
  void keepItems(std::span<const Item> items);
  [[nodiscard]] std::vector<Item> items(std::string_view threadId) const;

  /// Requests that have been answered; for ever, since a phone may ask late.
  void keepAnswered(std::string_view requestId, double at);
  [[nodiscard]] bool wasAnswered(std::string_view requestId) const;

 private:
  const Database& m_database;
};

}  // namespace varnel::store
