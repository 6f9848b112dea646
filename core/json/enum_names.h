// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace varnel::json {

/// The wire names of an enumeration: one table of {value, name} beside each, in declared order, the only place where a
/// name is spelled. Specialised as a `constexpr` array of pairs.
template <class Enum>
inline constexpr int kEnumNames = 0;

template <class Enum>
concept NamedEnum = requires { kEnumNames<Enum>.size(); };

template <NamedEnum Enum>
constexpr std::string_view nameOf(Enum value) {
  for (const auto& [candidate, name] : kEnumNames<Enum>) {
    if (candidate == value) return name;
  }
  return {};
}

template <NamedEnum Enum>
constexpr std::optional<Enum> fromName(std::string_view text) {
  for (const auto& [value, name] : kEnumNames<Enum>) {
    if (name == text) return value;
  }
  return std::nullopt;
}

}  // namespace varnel::json
