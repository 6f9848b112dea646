// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <boost/describe/members.hpp>
#include <boost/mp11/algorithm.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "app/lists/record_list_model.h"
#include "core/base/url.h"
#include "core/json/enum_names.h"

/// The roles of a record out of its description. Heavy: include it, and the `*_fields.h` of the record, only in the
/// .cpp that instantiates `rolesOf<R>`.
namespace varnel::lists {
namespace detail {

template <class R>
using Members = boost::describe::describe_members<R, boost::describe::mod_public>;

template <class T>
concept Described = std::is_aggregate_v<T> && boost::describe::has_describe_members<T>::value;

/// How a member looks in QML; members of a type without one (loose JSON) have no role, as QML does not interpret.
template <class T>
struct Shown;

template <class T>
concept Showable = requires(const T& value) { Shown<T>::variant(value); };

template <>
struct Shown<std::string> {
  static QVariant variant(const std::string& value) { return QString::fromStdString(value); }
};

template <>
struct Shown<QString> {
  static QVariant variant(const QString& value) { return value; }
};

template <class T>
  requires std::is_arithmetic_v<T>
struct Shown<T> {
  static QVariant variant(T value) { return QVariant::fromValue(value); }
};

template <>
struct Shown<std::int64_t> {
  static QVariant variant(std::int64_t value) { return QVariant::fromValue(qint64{value}); }
};

template <json::NamedEnum E>
struct Shown<E> {
  static QVariant variant(E value) {
    const auto name = json::nameOf(value);
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  }
};

template <>
struct Shown<base::Url> {
  static QVariant variant(const base::Url& value) { return QString::fromStdString(value.text()); }
};

/// State of its own that a row leads to; the list's owner keeps it alive.
template <class T>
  requires std::is_base_of_v<QObject, T>
struct Shown<T*> {
  static QVariant variant(T* value) { return QVariant::fromValue(value); }
};

/// An absent value is an invalid variant: `undefined` in QML.
template <Showable T>
struct Shown<std::optional<T>> {
  static QVariant variant(const std::optional<T>& value) { return value ? Shown<T>::variant(*value) : QVariant(); }
};

template <Showable T>
struct Shown<std::vector<T>> {
  static QVariant variant(const std::vector<T>& value) {
    QVariantList list;
    for (const auto& each : value) list.append(Shown<T>::variant(each));
    return list;
  }
};

template <Described R>
struct Shown<R> {
  static QVariant variant(const R& value) {
    QVariantMap map;
    boost::mp11::mp_for_each<Members<R>>([&](auto member) {
      using Member = std::remove_cvref_t<decltype(value.*member.pointer)>;
      if constexpr (Showable<Member>) {
        map.insert(QString::fromLatin1(member.name), Shown<Member>::variant(value.*member.pointer));
      }
    });
    return map;
  }
};

template <class R>
Role<R> identityRole() {
  return {
      .name = "identity",
      .read =
          [](const R& record) {
            return Shown<std::remove_cvref_t<decltype(record.identity())>>::variant(record.identity());
          },
      .same = [](const R& a, const R& b) { return a.identity() == b.identity(); },
  };
}

template <class R, class Member>
Role<R> memberRole() {
  using Type = std::remove_cvref_t<decltype(std::declval<const R&>().*Member::pointer)>;
  return {
      .name = Member::name,
      .read = [](const R& record) { return Shown<Type>::variant(record.*Member::pointer); },
      .same = [](const R& a, const R& b) { return a.*Member::pointer == b.*Member::pointer; },
  };
}

template <class R>
std::vector<Role<R>> makeRoles() {
  std::vector<Role<R>> roles{identityRole<R>()};
  boost::mp11::mp_for_each<Members<R>>([&]<class Member>(Member) {
    using Type = std::remove_cvref_t<decltype(std::declval<const R&>().*Member::pointer)>;
    if constexpr (Showable<Type>) roles.push_back(memberRole<R, Member>());
  });
  return roles;
}

}  // namespace detail

template <class R>
const std::vector<Role<R>>& rolesOf() {
  static const auto kRoles = detail::makeRoles<R>();
  return kRoles;
}

}  // namespace varnel::lists
