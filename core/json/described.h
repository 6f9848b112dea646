// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/members.hpp>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/mp11/algorithm.hpp>

#include "core/base/url.h"
#include "core/json/value.h"

/// What follows from a record's list of members without touching JSON: which types are records, when two of them are
/// equal, and their hash.
namespace varnel::json {

template <class T>
using Members = boost::describe::describe_members<T, boost::describe::mod_public>;

template <class T>
concept Record = std::is_aggregate_v<T> && boost::describe::has_describe_members<T>::value;

template <class T>
inline constexpr bool kIsOptional = false;
template <class T>
inline constexpr bool kIsOptional<std::optional<T>> = true;

template <Record T>
bool equal(const T& a, const T& b) {
  bool same = true;
  boost::mp11::mp_for_each<Members<T>>([&](auto member) { same = same && a.*member.pointer == b.*member.pointer; });
  return same;
}

inline void mixHash(std::size_t& seed, std::size_t value) {
  // The mixer of splitmix64 over both.
  std::uint64_t x = seed + 0x9e3779b97f4a7c15U + value;
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9U;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebU;
  seed = x ^ (x >> 31);
}

template <class T>
std::size_t hashValue(const T& value) {
  std::size_t seed = 0;
  if constexpr (Record<T>) {
    boost::mp11::mp_for_each<Members<T>>([&](auto member) { mixHash(seed, hashValue(value.*member.pointer)); });
  } else if constexpr (kIsOptional<T>) {
    if (value) mixHash(seed, hashValue(*value) + 1);
  } else if constexpr (std::is_same_v<T, JSONValue::Object>) {
    seed = JSONValue(value).hash();
  } else if constexpr (std::is_same_v<T, base::Url>) {
    seed = std::hash<std::string>{}(value.text());
  } else if constexpr (requires { typename T::allocator_type; } && !std::is_same_v<T, std::string>) {
    for (const auto& element : value) mixHash(seed, hashValue(element));
  } else {
    seed = std::hash<T>{}(value);
  }
  return seed;
}

}  // namespace varnel::json
