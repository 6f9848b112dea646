// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::store {

class Database;

/// What has been told to the phones, by number, for those that come back. Numbers only grow, over restarts too; some
/// are given out without an event being kept.
class EventLog {
 public:
  /// At least the newest `kept` events stay.
  explicit EventLog(const Database& database, std::int64_t kept = 2000) : m_database(database), m_kept(kept) {}

  /// The highest number given out; 0 before the first.
  [[nodiscard]] std::int64_t head() const { return counter("head"); }
  /// The highest number whose event is gone.
  [[nodiscard]] std::int64_t trimmed() const { return counter("trimmed"); }
  /// Keeps an event under the next number, which its text holds already.
  void append(std::int64_t sequence, std::string_view body);
  /// Takes that many numbers for a snapshot, whose events are not kept; the first of them.
  std::int64_t reserve(std::int64_t count);
  /// The number belongs to a snapshot that goes on after it.
  [[nodiscard]] bool isInsideSnapshot(std::int64_t sequence) const;
  /// Kept events with a higher number.
  [[nodiscard]] std::int64_t countAfter(std::int64_t sequence) const;
  [[nodiscard]] std::vector<std::string> after(std::int64_t sequence) const;

 private:
  [[nodiscard]] std::int64_t counter(std::string_view name) const;
  void setCounter(std::string_view name, std::int64_t value);
  void trim();

  const Database& m_database;
  std::int64_t m_kept;
};

}  // namespace varnel::store
