// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/conversation_search.h"

#include <QtCore/QStringList>
#include <boost/describe/class.hpp>
#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/lists/record_roles.h"
#include "app/model/app_model.h"
#include "app/screens/sessions/conversation_title.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(SearchRow, (), (sessionId, title, snippet, archived, spoken))

namespace {

constexpr std::chrono::milliseconds kTypingRests{350};

const wire::SearchOccurrence* firstOccurrence(const wire::ConversationSearchResult& result) {
  return result.occurrences && !result.occurrences->empty() ? &result.occurrences->front() : nullptr;
}

}  // namespace

SearchRow makeSearchRow(const wire::ConversationSearchResult& result) {
  const auto* const occurrence = firstOccurrence(result);
  SearchRow row{.sessionId = QString::fromStdString(result.thread.id),
                .title = conversationTitle(result.thread.name, result.thread.cwd),
                .snippet = QString::fromStdString(occurrence ? occurrence->snippet : result.snippet),
                .archived = result.thread.archived.value_or(false),
                .spoken = {}};
  QStringList spoken{row.title};
  if (row.archived) spoken << ConversationSearch::tr("Archived");
  if (!row.snippet.isEmpty()) spoken << row.snippet;
  row.spoken = spoken.join(QStringLiteral(", "));
  return row;
}

ConversationSearch::ConversationSearch(model::AppModel& model, QObject* parent) : QObject(parent), m_model(model) {
  m_rest.setSingleShot(true);
  m_rest.setInterval(kTypingRests);
  connect(&m_rest, &QTimer::timeout, this, [this] { m_model.search(m_text.toStdString()); });
  connect(&model, &model::AppModel::searchResultsChanged, this, &ConversationSearch::updateRows);
  connect(&model, &model::AppModel::searchingChanged, this, &ConversationSearch::changed);
  connect(&model, &model::AppModel::searchNextCursorChanged, this, &ConversationSearch::changed);
  updateRows();
}

void ConversationSearch::setText(const QString& text) {
  if (text == m_text) return;
  m_text = text;
  m_rest.start();
  emit textChanged();
}

bool ConversationSearch::isSearching() const {
  return m_model.isSearching();
}

bool ConversationSearch::isEmpty() const {
  return m_model.searchResults().empty();
}

bool ConversationSearch::hasMore() const {
  return m_model.searchNextCursor().has_value();
}

QString ConversationSearch::emptyTitle() const {
  return tr("No results for “%1”").arg(m_text);
}

void ConversationSearch::loadMore() {
  m_model.loadMoreSearchResults();
}

void ConversationSearch::open(int row) {
  const auto& results = m_model.searchResults();
  if (row < 0 || row >= std::ssize(results)) return;
  const auto& result = results[static_cast<std::size_t>(row)];
  const auto* const occurrence = firstOccurrence(result);
  const QString sessionId = QString::fromStdString(result.thread.id);
  m_model.selectTranscriptItem(occurrence ? std::optional(occurrence->itemId) : std::nullopt);
  emit opened(sessionId);
}

void ConversationSearch::updateRows() {
  std::vector<SearchRow> rows;
  for (const auto& result : m_model.searchResults()) rows.push_back(makeSearchRow(result));
  m_rows.assign(std::move(rows));
  emit changed();
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::SearchRow>>&
varnel::lists::rolesOf<varnel::screens::SearchRow>();
