// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/event_log.h"

#include "host/store/database.h"

namespace varnel::store {

namespace {

/// Old events go in batches, not one by one.
constexpr std::int64_t kTrimStep = 100;

}  // namespace

void EventLog::append(std::int64_t sequence, std::string_view body) {
  Transaction transaction(m_database);
  m_database.prepare("INSERT INTO events(sequence, body) VALUES (?, ?)").bind(sequence, body).run();
  setCounter("head", sequence);
  if (sequence % kTrimStep == 0) trim();
  transaction.commit();
}

std::int64_t EventLog::reserve(std::int64_t count) {
  Transaction transaction(m_database);
  const std::int64_t first = head() + 1;
  const std::int64_t last = first + count - 1;
  m_database.prepare("INSERT INTO snapshots(first, last) VALUES (?, ?)").bind(first, last).run();
  setCounter("head", last);
  transaction.commit();
  return first;
}

bool EventLog::isInsideSnapshot(std::int64_t sequence) const {
  auto row = m_database.prepare("SELECT first FROM snapshots WHERE last > ? ORDER BY last LIMIT 1");
  return row.bind(sequence).step() && row.integer(0) <= sequence;
}

std::int64_t EventLog::countAfter(std::int64_t sequence) const {
  auto row = m_database.prepare("SELECT count(*) FROM events WHERE sequence > ?");
  row.bind(sequence).step();
  return row.integer(0);
}

std::vector<std::string> EventLog::after(std::int64_t sequence) const {
  std::vector<std::string> bodies;
  auto rows = m_database.prepare("SELECT body FROM events WHERE sequence > ? ORDER BY sequence");
  rows.bind(sequence);
  while (rows.step()) bodies.push_back(rows.text(0));
  return bodies;
}

std::int64_t EventLog::counter(std::string_view name) const {
  auto row = m_database.prepare("SELECT value FROM event_counters WHERE name = ?");
  row.bind(name).step();
  return row.integer(0);
}

void EventLog::setCounter(std::string_view name, std::int64_t value) {
  m_database.prepare("UPDATE event_counters SET value = ? WHERE name = ?").bind(value, name).run();
}

void EventLog::trim() {
  auto row = m_database.prepare("SELECT sequence FROM events ORDER BY sequence DESC LIMIT 1 OFFSET ?");
  row.bind(m_kept);
  if (!row.step()) return;
  const std::int64_t last = row.integer(0);
  m_database.prepare("DELETE FROM events WHERE sequence <= ?").bind(last).run();
  m_database.prepare("DELETE FROM snapshots WHERE last <= ?").bind(last).run();
  setCounter("trimmed", last);
}

}  // namespace varnel::store
