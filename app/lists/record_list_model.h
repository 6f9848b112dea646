// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QVariant>
#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "app/lists/list_diff.h"

namespace varnel::lists {

/// What QML sees of one member of a record.
template <class R>
struct Role {
  QByteArray name;
  QVariant (*read)(const R&);
  bool (*same)(const R&, const R&);
};

/// The roles of a record: `identity` first, then a role for each described member that QML may look at, under its name.
/// Defined in app/lists/record_roles.h, which is heavy; one .cpp instantiates it for each record.
template <class R>
const std::vector<Role<R>>& rolesOf();

/// A list of records for QML, kept in step by identity: new records are inserted, gone ones removed, others moved or
/// changed in place, and only the roles that differ are told. Never resets, so views keep scroll position and focus.
///
/// `R` has `identity()`, `==` and a description of its members. Of records with equal identities the first goes on as
/// the first, the second as the second. Main thread only.
template <class R>
class RecordListModel : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(m_records.size());
  }

  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    const auto& roles = rolesOf<R>();
    const auto position = role - kFirstRole;
    if (index.row() < 0 || index.row() >= rowCount() || position < 0 || position >= std::ssize(roles)) return {};
    return roles[static_cast<std::size_t>(position)].read(m_records[static_cast<std::size_t>(index.row())]);
  }

  [[nodiscard]] QHash<int, QByteArray> roleNames() const override {
    QHash<int, QByteArray> names;
    for (const auto& role : rolesOf<R>()) names.insert(kFirstRole + static_cast<int>(names.size()), role.name);
    return names;
  }

  [[nodiscard]] const std::vector<R>& records() const { return m_records; }

  /// Makes these the records, touching only the rows that differ.
  void assign(std::vector<R> records) { splice(0, m_records.size(), std::move(records)); }

  /// The same for the `removed` records from `first` on, without looking at the others: no record among them may have
  /// an identity that one of the others has.
  void splice(std::size_t first, std::size_t removed, std::vector<R> records) {
    const auto origins = originsOf(records, first, removed);
    for (const auto& edit : editsFor(removed, origins)) {
      std::visit([&](const auto& each) { perform(each, first, records); }, edit);
    }
    // Inserted rows were taken from the new list; the others stand in its order by now.
    for (std::size_t row = 0; row < records.size(); ++row) {
      if (origins[row]) change(first + row, std::move(records[row]));
    }
  }

 private:
  static constexpr int kFirstRole = Qt::UserRole + 1;
  using Origins = std::vector<std::optional<std::size_t>>;
  using Identity = std::remove_cvref_t<decltype(std::declval<const R&>().identity())>;

  /// Most reloads change nothing of the order, so equal ends are matched without looking anything up.
  [[nodiscard]] Origins originsOf(const std::vector<R>& records, std::size_t first, std::size_t removed) const {
    const auto former = [this, first](std::size_t row) -> decltype(auto) { return m_records[first + row].identity(); };
    Origins origins(records.size());
    const auto shorter = std::min(records.size(), removed);
    std::size_t head = 0;
    while (head < shorter && records[head].identity() == former(head)) {
      origins[head] = head;
      ++head;
    }
    std::size_t tail = 0;
    while (tail < shorter - head && records[records.size() - 1 - tail].identity() == former(removed - 1 - tail)) {
      origins[records.size() - 1 - tail] = removed - 1 - tail;
      ++tail;
    }
    std::multimap<Identity, std::size_t> rest;
    for (std::size_t row = head; row < removed - tail; ++row) rest.emplace(former(row), row);
    for (std::size_t row = head; row < records.size() - tail; ++row) {
      const auto found = rest.lower_bound(records[row].identity());
      if (found == rest.end() || found->first != records[row].identity()) continue;
      origins[row] = found->second;
      rest.erase(found);
    }
    return origins;
  }

  void perform(const RemoveRows& edit, std::size_t offset, std::vector<R>&) {
    const auto first = offset + edit.first;
    beginRemoveRows({}, static_cast<int>(first), static_cast<int>(first + edit.count) - 1);
    m_records.erase(iteratorAt(first), iteratorAt(first + edit.count));
    endRemoveRows();
  }

  void perform(const MoveRow& edit, std::size_t offset, std::vector<R>&) {
    const auto from = offset + edit.from;
    const auto to = offset + edit.to;
    // Qt names the row before which the moved one is put, counted before it is taken out.
    const auto before = static_cast<int>(to > from ? to + 1 : to);
    beginMoveRows({}, static_cast<int>(from), static_cast<int>(from), {}, before);
    if (from < to) {
      std::rotate(iteratorAt(from), iteratorAt(from + 1), iteratorAt(to + 1));
    } else {
      std::rotate(iteratorAt(to), iteratorAt(from), iteratorAt(from + 1));
    }
    endMoveRows();
  }

  void perform(const InsertRows& edit, std::size_t offset, std::vector<R>& records) {
    const auto first = offset + edit.first;
    const auto begin = records.begin() + static_cast<std::ptrdiff_t>(edit.first);
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + edit.count) - 1);
    m_records.insert(iteratorAt(first), std::make_move_iterator(begin),
                     std::make_move_iterator(begin + static_cast<std::ptrdiff_t>(edit.count)));
    endInsertRows();
  }

  void change(std::size_t row, R&& record) {
    QList<int> changed;
    const auto& roles = rolesOf<R>();
    for (std::size_t i = 0; i < roles.size(); ++i) {
      if (!roles[i].same(m_records[row], record)) changed.append(kFirstRole + static_cast<int>(i));
    }
    // Also when no role differs: a member without a role may.
    m_records[row] = std::move(record);
    if (changed.isEmpty()) return;
    const auto position = index(static_cast<int>(row));
    emit dataChanged(position, position, changed);
  }

  auto iteratorAt(std::size_t row) { return m_records.begin() + static_cast<std::ptrdiff_t>(row); }

  std::vector<R> m_records;
};

}  // namespace varnel::lists
