// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/search.h"

#include "host/service/checked.h"
#include "host/service/cursor.h"

namespace varnel::service {

namespace {

constexpr std::size_t kWordsBytes = 1000;

std::string trimmed(const std::string& text) {
  constexpr std::string_view kBlank = " \t\r\n";
  const auto begin = text.find_first_not_of(kBlank);
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(kBlank) - begin + 1);
}

}  // namespace

Task<std::string> Search::find(std::string words, std::optional<std::string> cursor) {
  words = trimmed(words);
  if (words.empty()) co_return refuse(Failure::Kind::Invalid, "There is nothing to search for.");
  if (words.size() > kWordsBytes) co_return refuse(Failure::Kind::Invalid, "This is too much to search for.");
  const std::string scope = "search " + words;
  std::optional<store::SearchIndex::Position> after;
  if (cursor) {
    const auto read = readCursor(scope, *cursor);
    if (!read) co_return refuse(Failure::Kind::Invalid, "This is not a page of this search.");
    after = {.updatedAt = read->updatedAt, .sessionId = read->id};
  }
  co_await m_indexer.catchUp();
  auto page = m_index.search(words, after, kPage);
  wire::SearchEnvelope envelope{.data = std::move(page.results), .nextCursor = std::nullopt};
  if (page.next) {
    envelope.nextCursor = writeCursor(scope, {.updatedAt = page.next->updatedAt, .id = page.next->sessionId});
  }
  co_return checkedText("search", envelope);
}

}  // namespace varnel::service
