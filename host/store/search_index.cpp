// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/search_index.h"

#include <algorithm>
#include <limits>

#include "host/store/database.h"
#include "host/store/fold.h"

namespace varnel::store {

namespace {

constexpr std::size_t kExcerptAround = 60;
constexpr std::size_t kOccurrencesShown = 50;
/// The title stands among the items under this id, which no item has.
constexpr std::string_view kTitleItem;

/// All or nothing, inside a batch or without one.
class Step {
 public:
  explicit Step(const Database& database) : m_database(database) { m_database.execute("SAVEPOINT step"); }
  ~Step() {
    try {
      m_database.execute(m_kept ? "RELEASE step" : "ROLLBACK TO step; RELEASE step");
    } catch (const StoreError&) {
      // The batch around it is gone already, and this step with it.
    }
  }
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;
  void keep() { m_kept = true; }

 private:
  const Database& m_database;
  bool m_kept = false;
};

/// The index knows pieces of three characters; shorter texts are looked for one item after the other.
bool isIndexed(std::string_view text) {
  return characterCount(text) >= 3;
}

std::string condition(std::string_view text, const std::string& rows = "") {
  return isIndexed(text) ? "i.id IN (SELECT rowid FROM search_text WHERE search_text MATCH ?1" + rows + ")"
                         : "contains_folded(i.text, ?1)";
}

/// A phrase in quotation marks: nothing in it is an operator.
std::string term(std::string_view text) {
  if (!isIndexed(text)) return std::string(text);
  std::string quoted = "\"";
  for (const char byte : text) {
    if (byte == '"') quoted += '"';
    quoted += byte;
  }
  return quoted + '"';
}

std::string excerptOf(const std::string& text, std::string_view needle) {
  return excerpt(text, findFolded(text, needle).value_or(TextRange{}), kExcerptAround);
}

}  // namespace

bool SearchIndex::isCurrent(const Conversation& conversation) const {
  auto row = m_database.prepare(
      "SELECT 1 FROM search_conversations"
      " WHERE session_id = ? AND name IS ? AND cwd IS ? AND updated_at = ? AND archived = ?");
  return row.bind(conversation.id, conversation.name, conversation.cwd, conversation.updatedAt, conversation.archived)
      .step();
}

void SearchIndex::begin(const Conversation& conversation) {
  Step step(m_database);
  m_database
      .prepare(
          "INSERT INTO search_conversations VALUES (?1, ?2, ?3, 0, ?4) ON CONFLICT(session_id)"
          " DO UPDATE SET name = ?2, cwd = ?3, archived = ?4")
      .bind(conversation.id, conversation.name, conversation.cwd, conversation.archived)
      .run();
  const Item title{.id = std::string(kTitleItem), .turnId = "", .position = -1, .text = conversation.name.value_or("")};
  put(conversation.id, std::span(&title, 1));
  step.keep();
}

void SearchIndex::put(std::string_view sessionId, std::span<const Item> items) {
  Step step(m_database);
  auto statement = m_database.prepare(
      "INSERT INTO search_items(session_id, item_id, turn_id, position, text) VALUES (?1, ?2, ?3, ?4, ?5)"
      " ON CONFLICT(session_id, item_id) DO UPDATE SET turn_id = ?3, position = ?4, text = ?5"
      " WHERE text <> ?5 OR position <> ?4");
  for (const Item& item : items) {
    statement.bind(sessionId, item.id, item.turnId, item.position, item.text).run();
    statement.reset();
  }
  step.keep();
}

void SearchIndex::finish(const Conversation& conversation, const std::unordered_set<std::string>& itemIds) {
  std::vector<std::int64_t> gone;
  auto rows = m_database.prepare("SELECT id, item_id FROM search_items WHERE session_id = ? AND item_id <> ''");
  rows.bind(conversation.id);
  while (rows.step()) {
    if (!itemIds.contains(rows.text(1))) gone.push_back(rows.integer(0));
  }
  rows.reset();
  Step step(m_database);
  for (const std::int64_t id : gone) m_database.prepare("DELETE FROM search_items WHERE id = ?").bind(id).run();
  m_database.prepare("UPDATE search_conversations SET updated_at = ? WHERE session_id = ?")
      .bind(conversation.updatedAt, conversation.id)
      .run();
  step.keep();
}

void SearchIndex::keepOnly(const std::unordered_set<std::string>& sessionIds) {
  std::vector<std::string> gone;
  auto rows = m_database.prepare("SELECT session_id FROM search_conversations");
  while (rows.step()) {
    if (!sessionIds.contains(rows.text(0))) gone.push_back(rows.text(0));
  }
  rows.reset();
  Transaction transaction(m_database);
  for (const auto& id : gone) {
    // Named, not cascaded: the rows of the text index go by a trigger, which a cascade fires only in some settings.
    m_database.prepare("DELETE FROM search_items WHERE session_id = ?").bind(id).run();
    m_database.prepare("DELETE FROM search_conversations WHERE session_id = ?").bind(id).run();
  }
  transaction.commit();
}

SearchIndex::Page SearchIndex::search(std::string_view text, const std::optional<Position>& after,
                                      std::size_t limit) const {
  auto rows = m_database.prepare(
      "SELECT session_id, name, cwd, updated_at, archived FROM search_conversations"
      " WHERE session_id IN (SELECT i.session_id FROM search_items i WHERE " +
      condition(text) +
      ") AND (updated_at < ?2 OR (updated_at = ?2 AND session_id > ?3))"
      " ORDER BY updated_at DESC, session_id LIMIT ?4");
  const Position from = after.value_or(Position{.updatedAt = std::numeric_limits<double>::infinity(), .sessionId = ""});
  rows.bind(term(text), from.updatedAt, from.sessionId, static_cast<std::int64_t>(limit + 1));
  Page page;
  while (rows.step()) {
    if (page.results.size() == limit) {
      const auto& last = page.results.back().thread;
      page.next = Position{.updatedAt = last.updatedAt.value_or(0), .sessionId = last.id};
      break;
    }
    page.results.push_back({.snippet = "",
                            .thread = {.id = rows.text(0),
                                       .name = rows.optionalText(1),
                                       .cwd = rows.optionalText(2),
                                       .updatedAt = rows.number(3),
                                       .archived = rows.integer(4) != 0},
                            .occurrences = std::nullopt});
  }
  addOccurrences(text, page.results);
  return page;
}

void SearchIndex::addOccurrences(std::string_view text, std::vector<wire::ConversationSearchResult>& results) const {
  // The index goes by row number: without the bounds it would walk through all hits for each conversation.
  const std::string kRowsOfConversation =
      " AND rowid BETWEEN (SELECT min(id) FROM search_items WHERE session_id = ?2)"
      " AND (SELECT max(id) FROM search_items WHERE session_id = ?2)";
  auto rows =
      m_database.prepare("SELECT i.item_id, i.turn_id, i.position, i.text FROM search_items i WHERE " +
                         condition(text, kRowsOfConversation) + " AND i.session_id = ?2 ORDER BY i.position LIMIT ?3");
  for (auto& result : results) {
    std::vector<wire::SearchOccurrence> occurrences;
    rows.bind(term(text), result.thread.id, static_cast<std::int64_t>(kOccurrencesShown + 1));
    while (rows.step()) {
      std::string shown = excerptOf(rows.text(3), text);
      if (result.snippet.empty()) result.snippet = shown;
      if (rows.text(0) == kTitleItem || occurrences.size() == kOccurrencesShown) continue;
      occurrences.push_back({.itemId = rows.text(0),
                             .snippet = std::move(shown),
                             .turnId = rows.text(1),
                             .turnCursor = std::to_string(rows.integer(2))});
    }
    rows.reset();
    if (!occurrences.empty()) result.occurrences = std::move(occurrences);
  }
}

}  // namespace varnel::store
