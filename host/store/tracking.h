// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace varnel::store {

class Database;

/// What the user has marked about a conversation.
struct Marks {
  bool pinned = false;
  bool tracked = false;
};

/// Pins, and the conversation that the lock screen follows.
class Tracking {
 public:
  explicit Tracking(const Database& database) : m_database(database) {}

  [[nodiscard]] std::map<std::string, Marks, std::less<>> all() const;
  [[nodiscard]] Marks of(std::string_view sessionId) const;
  void setPinned(std::string_view sessionId, bool pinned);
  /// One conversation is tracked at a time.
  void track(std::string_view sessionId);
  void untrack(std::string_view sessionId);
  void untrackAll();

 private:
  const Database& m_database;
};

}  // namespace varnel::store
