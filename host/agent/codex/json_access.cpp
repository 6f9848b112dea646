// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/json_access.h"

#include <cmath>

namespace varnel::agent::codex {

const JSONValue& memberOf(const JSONValue& value, std::string_view name) {
  static const JSONValue kNull;
  const auto* member = value.member(name);
  return member == nullptr ? kNull : *member;
}

std::string textOf(const JSONValue& value, std::string_view name) {
  return optionalTextOf(value, name).value_or("");
}

std::optional<std::string> optionalTextOf(const JSONValue& value, std::string_view name) {
  const auto* text = memberOf(value, name).string();
  return text == nullptr ? std::nullopt : std::optional(*text);
}

std::optional<double> numberOf(const JSONValue& value, std::string_view name) {
  const auto* number = memberOf(value, name).number();
  return number == nullptr ? std::nullopt : std::optional(*number);
}

std::optional<std::int64_t> wholeOf(const JSONValue& value, std::string_view name) {
  constexpr double kLargest = 9007199254740992.0;
  const auto number = numberOf(value, name);
  if (!number || !(std::abs(*number) <= kLargest)) return std::nullopt;
  return static_cast<std::int64_t>(std::llround(*number));
}

bool flagOf(const JSONValue& value, std::string_view name) {
  const auto* flag = memberOf(value, name).boolean();
  return flag != nullptr && *flag;
}

const JSONValue::Array& listOf(const JSONValue& value, std::string_view name) {
  static const JSONValue::Array kNone;
  const auto* list = memberOf(value, name).array();
  return list == nullptr ? kNone : *list;
}

const JSONValue::Object& objectOf(const JSONValue& value) {
  static const JSONValue::Object kNone;
  const auto* object = value.object();
  return object == nullptr ? kNone : *object;
}

JSONValue nullable(const std::optional<std::string>& text) {
  return text ? JSONValue(*text) : JSONValue();
}

}  // namespace varnel::agent::codex
