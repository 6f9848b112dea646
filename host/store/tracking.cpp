// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/tracking.h"

#include "host/store/database.h"

namespace varnel::store {

std::map<std::string, Marks, std::less<>> Tracking::all() const {
  std::map<std::string, Marks, std::less<>> marks;
  auto rows = m_database.prepare("SELECT session_id, pinned, tracked FROM tracking");
  while (rows.step()) {
    marks.emplace(rows.text(0), Marks{.pinned = rows.integer(1) != 0, .tracked = rows.integer(2) != 0});
  }
  return marks;
}

Marks Tracking::of(std::string_view sessionId) const {
  auto row = m_database.prepare("SELECT pinned, tracked FROM tracking WHERE session_id = ?");
  if (!row.bind(sessionId).step()) return {};
  return {.pinned = row.integer(0) != 0, .tracked = row.integer(1) != 0};
}

void Tracking::setPinned(std::string_view sessionId, bool pinned) {
  m_database
      .prepare(
          "INSERT INTO tracking(session_id, pinned) VALUES (?1, ?2)"
          " ON CONFLICT(session_id) DO UPDATE SET pinned = ?2")
      .bind(sessionId, pinned)
      .run();
}

void Tracking::track(std::string_view sessionId) {
  Transaction transaction(m_database);
  untrackAll();
  m_database
      .prepare(
          "INSERT INTO tracking(session_id, tracked) VALUES (?, 1)"
          " ON CONFLICT(session_id) DO UPDATE SET tracked = 1")
      .bind(sessionId)
      .run();
  transaction.commit();
}

void Tracking::untrack(std::string_view sessionId) {
  m_database.prepare("UPDATE tracking SET tracked = 0 WHERE session_id = ?").bind(sessionId).run();
}

void Tracking::untrackAll() {
  m_database.execute("UPDATE tracking SET tracked = 0 WHERE tracked");
}

}  // namespace varnel::store
