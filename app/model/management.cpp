// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <iterator>

#include "app/client/api_client.h"
#include "app/model/app_model.h"
#include "core/base/text.h"

namespace varnel::model {
namespace {

template <class Record>
std::vector<Record> joined(std::vector<Record> list, std::vector<Record> more) {
  std::ranges::move(more, std::back_inserter(list));
  return list;
}

template <class Record>
std::vector<Record> without(std::vector<Record> list, std::string_view id) {
  std::erase_if(list, [&](const Record& record) { return record.id == id; });
  return list;
}

std::set<std::string, std::less<>> idsOf(const std::vector<wire::ArchivedSession>& sessions) {
  std::set<std::string, std::less<>> ids;
  for (const auto& session : sessions) ids.insert(session.id);
  return ids;
}

}  // namespace

QCoro::Task<bool> AppModel::rename(std::string sessionId, std::string name) {
  const std::string trimmed(base::trimLines(name));
  const auto* former = session(sessionId);
  if (trimmed.empty() || !former) co_return false;
  const auto kept = *former;
  const auto stop = m_pairing.get_token();
  const auto put = [this](wire::SessionSummary summary) {
    auto sessions = m_fields.sessions;
    const auto entry = std::ranges::find(sessions, summary.id, &wire::SessionSummary::id);
    if (entry != sessions.end()) *entry = std::move(summary);
    assign(m_fields.sessions, std::move(sessions), &AppModel::sessionsChanged);
  };

  auto renamed = kept;
  renamed.name = renamed.project = trimmed;
  put(std::move(renamed));
  const auto answer = co_await m_client->rename(sessionId, trimmed, stop);
  if (stop.stop_requested()) co_return answer.has_value();
  if (accept(answer)) co_return true;
  put(kept);
  report(answer.error());
  co_return false;
}

QCoro::Task<bool> AppModel::archive(std::string sessionId) {
  const auto stop = m_pairing.get_token();
  const auto answer = co_await m_client->archive(sessionId, false, stop);
  if (stop.stop_requested()) co_return answer.has_value();
  if (!accept(answer)) {
    report(answer.error());
    co_return false;
  }
  assign(m_fields.sessions, without(m_fields.sessions, sessionId), &AppModel::sessionsChanged);
  if (!stop.stop_requested()) co_await m_surroundings.liveActivities.clear();
  co_return true;
}

QCoro::Task<bool> AppModel::unarchive(std::string sessionId) {
  const auto stop = m_pairing.get_token();
  const auto answer = co_await m_client->archive(sessionId, true, stop);
  if (stop.stop_requested()) co_return answer.has_value();
  if (!accept(answer)) {
    report(answer.error());
    co_return false;
  }
  setArchive(without(m_fields.archivedSessions, sessionId), m_fields.archivedNextCursor);
  if (!stop.stop_requested()) co_await refreshUntil(stop, false);
  co_return true;
}

QCoro::Task<> AppModel::loadArchived(bool loadMore) {
  const auto stop = m_pairing.get_token();
  auto page = co_await m_client->archivedSessions(loadMore ? m_fields.archivedNextCursor : std::nullopt, stop);
  if (stop.stop_requested()) co_return;
  if (!accept(page)) {
    report(page.error());
    co_return;
  }
  auto sessions = std::move(page->data);
  if (loadMore) sessions = joined(m_fields.archivedSessions, std::move(sessions));
  setArchive(std::move(sessions), std::move(page->nextCursor));
}

void AppModel::setArchive(std::vector<wire::ArchivedSession> sessions, std::optional<std::string> nextCursor) {
  auto ids = idsOf(sessions);
  const bool sessionsDiffer = put(m_fields.archivedSessions, std::move(sessions));
  const bool cursorDiffers = put(m_fields.archivedNextCursor, std::move(nextCursor));
  const bool idsDiffer = put(m_fields.archivedSessionIds, std::move(ids));
  if (sessionsDiffer) emit archivedSessionsChanged();
  if (cursorDiffers) emit archivedNextCursorChanged();
  if (idsDiffer) emit archivedSessionIdsChanged();
}

QCoro::Task<> AppModel::search(std::string query) {
  const auto pairing = m_pairing.get_token();
  const std::string trimmed(base::trimLines(query));
  if (trimmed.empty()) {
    setSearch({}, std::nullopt);
    co_return;
  }
  m_currentSearchQuery = trimmed;
  assign(m_fields.searching, true, &AppModel::searchingChanged);
  const auto lifetime = m_lifetime.get_token();
  auto page = co_await m_client->search(trimmed, std::nullopt, pairing);
  if (lifetime.stop_requested()) co_return;
  if (!pairing.stop_requested() && accept(page) && m_currentSearchQuery == trimmed) {
    setSearch(std::move(page->data), std::move(page->nextCursor));
    co_return;
  }
  if (!page) report(page.error());
  assign(m_fields.searching, false, &AppModel::searchingChanged);
}

QCoro::Task<> AppModel::loadMoreSearchResults() {
  if (!m_fields.searchNextCursor || m_currentSearchQuery.empty() || m_fields.searching) co_return;
  const auto lifetime = m_lifetime.get_token();
  const auto pairing = m_pairing.get_token();
  assign(m_fields.searching, true, &AppModel::searchingChanged);
  auto page = co_await m_client->search(m_currentSearchQuery, m_fields.searchNextCursor, pairing);
  if (lifetime.stop_requested()) co_return;
  if (!pairing.stop_requested() && accept(page)) {
    setSearch(joined(m_fields.searchResults, std::move(page->data)), std::move(page->nextCursor));
    co_return;
  }
  if (!page) report(page.error());
  assign(m_fields.searching, false, &AppModel::searchingChanged);
}

void AppModel::setSearch(std::vector<wire::ConversationSearchResult> results, std::optional<std::string> nextCursor) {
  const bool resultsDiffer = put(m_fields.searchResults, std::move(results));
  const bool cursorDiffers = put(m_fields.searchNextCursor, std::move(nextCursor));
  const bool searchingDiffers = put(m_fields.searching, false);
  if (resultsDiffer) emit searchResultsChanged();
  if (cursorDiffers) emit searchNextCursorChanged();
  if (searchingDiffers) emit searchingChanged();
}

}  // namespace varnel::model
