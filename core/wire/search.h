// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

/// Pages of the archive and of search results. Cursors are opaque; an absent `nextCursor` ends the list.
namespace varnel::wire {

struct ArchivedSession {
  std::string id;
  std::optional<std::string> name;
  std::optional<std::string> cwd;
  std::optional<double> updatedAt;  ///< seconds since 1970, UTC

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const ArchivedSession&, const ArchivedSession&);

struct ArchivedSessionsEnvelope {
  std::vector<ArchivedSession> data;
  std::optional<std::string> nextCursor;
};
bool operator==(const ArchivedSessionsEnvelope&, const ArchivedSessionsEnvelope&);

struct SearchThread {
  std::string id;
  std::optional<std::string> name;
  std::optional<std::string> cwd;
  std::optional<double> updatedAt;  ///< seconds since 1970, UTC
  std::optional<bool> archived;

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const SearchThread&, const SearchThread&);

struct SearchOccurrence {
  std::string itemId;
  std::string snippet;
  std::string turnId;
  std::string turnCursor;

  [[nodiscard]] const std::string& identity() const { return itemId; }
};
bool operator==(const SearchOccurrence&, const SearchOccurrence&);

struct ConversationSearchResult {
  std::string snippet;
  SearchThread thread;
  std::optional<std::vector<SearchOccurrence>> occurrences;

  [[nodiscard]] const std::string& identity() const { return thread.id; }
};
bool operator==(const ConversationSearchResult&, const ConversationSearchResult&);

struct SearchEnvelope {
  std::vector<ConversationSearchResult> data;
  std::optional<std::string> nextCursor;
};
bool operator==(const SearchEnvelope&, const SearchEnvelope&);

}  // namespace varnel::wire
