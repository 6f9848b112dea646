// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/agent_memory.h"

#include "host/store/database.h"

namespace varnel::store {

std::map<std::string, std::string> AgentMemory::threads() const {
  std::map<std::string, std::string> found;
  auto rows = m_database.prepare("SELECT thread_id, memory FROM agent_threads");
  while (rows.step()) found.emplace(rows.text(0), rows.text(1));
  return found;
}

void AgentMemory::keepThread(std::string_view threadId, std::string_view memory) {
  m_database.prepare("INSERT OR REPLACE INTO agent_threads(thread_id, memory) VALUES (?, ?)")
      .bind(threadId, memory)
      .run();
}

void AgentMemory::keepItems(std::span<const Item> items) {
  if (items.empty()) return;
  Transaction transaction(m_database);
  auto row = m_database.prepare(
      "INSERT OR REPLACE INTO agent_items(thread_id, item_id, turn_id, at, body) VALUES (?, ?, ?, ?, ?)");
  for (const auto& item : items) {
    row.bind(item.threadId, item.id, item.turnId, item.at, item.body).run();
    row.reset();
  }
  transaction.commit();
}

std::vector<AgentMemory::Item> AgentMemory::items(std::string_view threadId) const {
  std::vector<Item> found;
  auto rows = m_database.prepare(
      "SELECT item_id, thread_id, turn_id, at, body FROM agent_items WHERE thread_id = ? ORDER BY at");
  rows.bind(threadId);
  while (rows.step()) {
    found.push_back({.id = rows.text(0),
                     .threadId = rows.text(1),
                     .turnId = rows.text(2),
                     .at = rows.number(3),
                     .body = rows.optionalText(4)});
  }
  return found;
}

void AgentMemory::keepAnswered(std::string_view requestId, double at) {
  m_database.prepare("INSERT OR REPLACE INTO agent_answers(request_id, at) VALUES (?, ?)").bind(requestId, at).run();
}

bool AgentMemory::wasAnswered(std::string_view requestId) const {
  auto row = m_database.prepare("SELECT 1 FROM agent_answers WHERE request_id = ?");
  return row.bind(requestId).step();
}

}  // namespace varnel::store
