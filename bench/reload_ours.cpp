// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/reload_ours.h"

#include <boost/describe/class.hpp>

#include <algorithm>
#include <span>
#include <stdexcept>
#include <utility>

#include "app/lists/record_roles.h"

namespace varnel::bench {

BOOST_DESCRIBE_STRUCT(ReloadRow, (), (id, text, count))

Conversation::Conversation() {
  const auto touch = [this](const QModelIndex&, int first, int last) {
    m_touched += static_cast<std::size_t>(last - first) + 1;
  };
  QObject::connect(&m_rows, &QAbstractItemModel::rowsInserted, &m_rows, touch);
  QObject::connect(&m_rows, &QAbstractItemModel::rowsRemoved, &m_rows, touch);
  QObject::connect(&m_rows, &QAbstractItemModel::rowsMoved, &m_rows, touch);
  QObject::connect(&m_rows, &QAbstractItemModel::dataChanged, &m_rows,
                   [touch](const QModelIndex& first, const QModelIndex& last) { touch({}, first.row(), last.row()); });
}

void Conversation::reload(std::string body) {
  auto detail = wire::decodeSessionDetail(std::move(body), m_text);
  if (!detail) throw std::runtime_error(detail.error().message());
  if (detail->text == nullptr || !detail->session || !*detail->session) throw std::runtime_error("not a good answer");
  m_former = std::exchange(m_text, detail->text);
  apply({.keptFront = detail->keptFront, .keptBack = detail->keptBack, .items = std::move(**detail->items)});
}

void Conversation::apply(transcript::ServerChange change) {
  const auto items = transcript::reconcileInPlace(m_items, m_optimistic, std::move(change));
  const auto rows = m_fold.update(m_items, items);
  std::vector<ReloadRow> fresh;
  fresh.reserve(rows.inserted);
  for (const auto& row : std::span(m_fold.rows()).subspan(rows.first, rows.inserted)) fresh.push_back(rowFrom(row));
  m_rows.splice(rows.first, rows.removed, std::move(fresh));
}

ReloadRow Conversation::rowFrom(const transcript::RowFold::Row& row) const {
  const wire::TranscriptItem& first = m_items[row.first];
  if (!row.isRun) {
    return {.id = QString::fromStdString(first.id), .text = QString::fromStdString(first.text.value_or(""))};
  }
  const auto shown = std::span(m_items).subspan(row.first, row.last - row.first + 1);
  const auto count = std::ranges::count_if(shown, [](const auto& item) { return !transcript::isDropped(item); });
  return {.id = QString::fromStdString("tools-" + first.id),
          .text = QString::fromStdString(first.title.value_or(first.type)),
          .count = static_cast<int>(count)};
}

}  // namespace varnel::bench

template const std::vector<varnel::lists::Role<varnel::bench::ReloadRow>>&
varnel::lists::rolesOf<varnel::bench::ReloadRow>();
