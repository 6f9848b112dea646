// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/row_fold.h"

#include <algorithm>
#include <iterator>

namespace varnel::transcript {

bool isMessage(const wire::TranscriptItem& item) {
  return item.role == "user" || item.role == "assistant";
}

bool isDropped(const wire::TranscriptItem& item) {
  return item.type == "reasoning" || item.type == "plan";
}

base::Splice RowFold::update(std::span<const wire::TranscriptItem> items, const base::Splice& change) {
  const std::size_t changeEnd = change.first + change.inserted;
  const auto formerPlace = [&](std::size_t item) { return item - change.inserted + change.removed; };
  // A run before the change may go on into it.
  auto begin = std::ranges::lower_bound(m_rows, change.first, {}, &Row::first);
  if (begin != m_rows.begin() && std::prev(begin)->isRun) --begin;
  auto end = std::ranges::lower_bound(begin, m_rows.end(), change.first + change.removed, {}, &Row::first);
  // Behind the change, a row that begins where one began shows the same as that one, and so do all that follow.
  const auto isFormer = [&](std::size_t item) {
    if (item < changeEnd) return false;
    while (end != m_rows.end() && end->first < formerPlace(item)) ++end;
    return end != m_rows.end() && end->first == formerPlace(item);
  };

  std::vector<Row> fresh;
  std::size_t at = begin == m_rows.begin() ? 0 : std::prev(begin)->last + 1;
  for (; at < items.size(); ++at) {
    if (isDropped(items[at])) continue;
    const bool isRun = !isMessage(items[at]);
    if (isRun && !fresh.empty() && fresh.back().isRun) {
      fresh.back().last = at;
    } else if (isFormer(at)) {
      break;
    } else {
      fresh.push_back({.isRun = isRun, .first = at, .last = at});
    }
  }
  if (at == items.size()) end = m_rows.end();
  return put(begin, end, std::move(fresh), change);
}

base::Splice RowFold::put(Rows::iterator begin, Rows::iterator end, Rows fresh, const base::Splice& change) {
  // The run before the change may have ended there all the same.
  if (begin != end && !fresh.empty() && *begin == fresh.front() && begin->last < change.first) {
    ++begin;
    fresh.erase(fresh.begin());
  }
  if (change.inserted != change.removed) {
    for (auto row = end; row != m_rows.end(); ++row) {
      row->first = row->first - change.removed + change.inserted;
      row->last = row->last - change.removed + change.inserted;
    }
  }
  const base::Splice splice{.first = static_cast<std::size_t>(begin - m_rows.begin()),
                            .removed = static_cast<std::size_t>(end - begin),
                            .inserted = fresh.size()};
  m_rows.insert(m_rows.erase(begin, end), fresh.begin(), fresh.end());
  return splice;
}

}  // namespace varnel::transcript
