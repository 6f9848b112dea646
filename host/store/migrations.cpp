// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/migrations.h"

#include <array>
#include <string_view>

#include "host/store/database.h"

namespace varnel::store {

namespace {

constexpr std::string_view kFirst = R"sql(
CREATE TABLE devices(
  id TEXT PRIMARY KEY, name TEXT NOT NULL, token_hash BLOB NOT NULL UNIQUE,
  created_at REAL NOT NULL, last_seen_at REAL);

-- head: last number given out; trimmed: highest number whose event is no longer kept.
CREATE TABLE event_counters(name TEXT PRIMARY KEY, value INTEGER NOT NULL);
INSERT INTO event_counters VALUES ('head', 0), ('trimmed', 0);
CREATE TABLE events(sequence INTEGER PRIMARY KEY, body TEXT NOT NULL);

CREATE TABLE tracking(
  session_id TEXT PRIMARY KEY, pinned INTEGER NOT NULL DEFAULT 0, tracked INTEGER NOT NULL DEFAULT 0);

CREATE TABLE uploads(
  id TEXT PRIMARY KEY, session_id TEXT NOT NULL, kind TEXT NOT NULL, name TEXT NOT NULL, mime_type TEXT NOT NULL,
  size INTEGER NOT NULL, created_at REAL NOT NULL, sent INTEGER NOT NULL DEFAULT 0);

CREATE TABLE answers(
  device_id TEXT NOT NULL REFERENCES devices(id) ON DELETE CASCADE, key TEXT NOT NULL, request_hash BLOB NOT NULL,
  status INTEGER NOT NULL, body TEXT NOT NULL, created_at REAL NOT NULL, PRIMARY KEY(device_id, key));
CREATE INDEX answers_by_age ON answers(created_at);

CREATE TABLE search_conversations(
  session_id TEXT PRIMARY KEY, name TEXT, cwd TEXT, updated_at REAL NOT NULL, archived INTEGER NOT NULL);
CREATE TABLE search_items(
  id INTEGER PRIMARY KEY, session_id TEXT NOT NULL REFERENCES search_conversations(session_id) ON DELETE CASCADE,
  item_id TEXT NOT NULL, turn_id TEXT NOT NULL, position INTEGER NOT NULL, text TEXT NOT NULL,
  UNIQUE(session_id, item_id));
CREATE VIRTUAL TABLE search_text USING fts5(text, content='search_items', content_rowid='id', tokenize='trigram');
CREATE TRIGGER search_items_added AFTER INSERT ON search_items BEGIN
  INSERT INTO search_text(rowid, text) VALUES (new.id, new.text);
END;
CREATE TRIGGER search_items_removed AFTER DELETE ON search_items BEGIN
  INSERT INTO search_text(search_text, rowid, text) VALUES ('delete', old.id, old.text);
END;
CREATE TRIGGER search_items_changed AFTER UPDATE OF text ON search_items BEGIN
  INSERT INTO search_text(search_text, rowid, text) VALUES ('delete', old.id, old.text);
  INSERT INTO search_text(rowid, text) VALUES (new.id, new.text);
END;
)sql";

// Numbers that one stream was given for a snapshot: who stopped between the first and the last has not seen all of it.
constexpr std::string_view kSnapshots = "CREATE TABLE snapshots(first INTEGER NOT NULL, last INTEGER PRIMARY KEY)";

// Messages that wait for the end of a turn; attempted: handed to the agent, which may or may not have taken it.
constexpr std::string_view kQueue = R"sql(
CREATE TABLE queue(
  position INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL UNIQUE, session_id TEXT NOT NULL, body TEXT NOT NULL,
  created_at REAL NOT NULL, attempted INTEGER NOT NULL DEFAULT 0, failure TEXT);
CREATE INDEX queue_by_session ON queue(session_id);
)sql";

// What the agent forgets when its process ends.
constexpr std::string_view kAgentMemory = R"sql(
CREATE TABLE agent_threads(thread_id TEXT PRIMARY KEY, memory TEXT NOT NULL);
CREATE TABLE agent_items(
  thread_id TEXT NOT NULL, item_id TEXT NOT NULL, turn_id TEXT NOT NULL, at REAL NOT NULL, body TEXT,
  PRIMARY KEY(thread_id, item_id)) WITHOUT ROWID;
CREATE TABLE agent_answers(request_id TEXT PRIMARY KEY, at REAL NOT NULL);
)sql";

constexpr std::array kSteps{kFirst, kSnapshots, kQueue, kAgentMemory};

}  // namespace

std::expected<void, std::string> migrate(const Database& database) {
  auto version = database.prepare("PRAGMA user_version");
  version.step();
  const auto seen = static_cast<std::size_t>(version.integer(0));
  version.reset();
  if (seen > kSteps.size()) return std::unexpected("it was written by a newer version of varnel");
  for (std::size_t step = seen; step < kSteps.size(); ++step) {
    Transaction transaction(database);
    database.execute(std::string(kSteps[step]));
    database.execute("PRAGMA user_version = " + std::to_string(step + 1));
    transaction.commit();
  }
  return {};
}

}  // namespace varnel::store
