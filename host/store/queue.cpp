// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/queue.h"

#include "host/store/database.h"

namespace varnel::store {

void Queue::add(const Entry& entry) {
  m_database.prepare("INSERT INTO queue(id, session_id, body, created_at) VALUES (?, ?, ?, ?)")
      .bind(entry.id, entry.sessionId, entry.body, entry.createdAt)
      .run();
}

std::vector<Queue::Entry> Queue::of(std::string_view sessionId) const {
  std::vector<Entry> entries;
  auto rows = m_database.prepare(
      "SELECT id, session_id, body, created_at, attempted, failure FROM queue WHERE session_id = ? ORDER BY position");
  rows.bind(sessionId);
  while (rows.step()) {
    entries.push_back({.id = rows.text(0),
                       .sessionId = rows.text(1),
                       .body = rows.text(2),
                       .createdAt = rows.number(3),
                       .attempted = rows.integer(4) != 0,
                       .failure = rows.optionalText(5)});
  }
  return entries;
}

std::set<std::string> Queue::sessions() const {
  std::set<std::string> ids;
  auto rows = m_database.prepare("SELECT DISTINCT session_id FROM queue WHERE failure IS NULL");
  while (rows.step()) ids.insert(rows.text(0));
  return ids;
}

void Queue::markAttempted(std::string_view id, bool attempted) {
  m_database.prepare("UPDATE queue SET attempted = ? WHERE id = ?").bind(attempted, id).run();
}

void Queue::fail(std::string_view id, std::string_view failure) {
  m_database.prepare("UPDATE queue SET failure = ?, attempted = 0 WHERE id = ?").bind(failure, id).run();
}

void Queue::remove(std::string_view id) {
  m_database.prepare("DELETE FROM queue WHERE id = ?").bind(id).run();
}

}  // namespace varnel::store
