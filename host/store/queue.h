// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::store {

class Database;

/// Messages that wait for the end of a turn, in the order in which they came.
class Queue {
 public:
  struct Entry {
    std::string id;
    std::string sessionId;
    std::string body;  ///< as the phone sent it
    double createdAt = 0;
    bool attempted = false;  ///< handed to the agent, which may or may not have taken it
    std::optional<std::string> failure;
  };

  explicit Queue(const Database& database) : m_database(database) {}

  void add(const Entry& entry);
  [[nodiscard]] std::vector<Entry> of(std::string_view sessionId) const;
  /// Conversations with messages that have not failed.
  [[nodiscard]] std::set<std::string> sessions() const;
  void markAttempted(std::string_view id, bool attempted);
  void fail(std::string_view id, std::string_view failure);
  void remove(std::string_view id);

 private:
  const Database& m_database;
};

}  // namespace varnel::store
