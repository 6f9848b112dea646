// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace varnel::json {

/// Any JSON value, for what is not modelled strictly. Plain data: copied deeply, compared structurally.
///
/// Object members have no order of their own; they are kept, and written, in ascending byte order of their keys. When
/// a text names a key twice the later member holds.
class JSONValue {
 public:
  using Object = std::map<std::string, JSONValue, std::less<>>;
  using Array = std::vector<JSONValue>;
  using Null = std::monostate;

  JSONValue() = default;
  JSONValue(std::string value) : m_value(std::move(value)) {}
  JSONValue(const char* value) : m_value(std::string(value)) {}
  JSONValue(std::nullptr_t) = delete;
  JSONValue(double value) : m_value(value) {}
  JSONValue(bool value) : m_value(value) {}
  JSONValue(Object value) : m_value(std::move(value)) {}
  JSONValue(Array value) : m_value(std::move(value)) {}
  /// Integers become doubles, as every JSON number does: beyond 2^53 the nearest one.
  template <class Integer>
    requires(std::is_integral_v<Integer> && !std::is_same_v<Integer, bool>)
  JSONValue(Integer value) : m_value(static_cast<double>(value)) {}

  /// The payload of a case, or null when the value is of another case.
  [[nodiscard]] const std::string* string() const { return std::get_if<std::string>(&m_value); }
  [[nodiscard]] const double* number() const { return std::get_if<double>(&m_value); }
  [[nodiscard]] const bool* boolean() const { return std::get_if<bool>(&m_value); }
  [[nodiscard]] const Object* object() const { return std::get_if<Object>(&m_value); }
  [[nodiscard]] const Array* array() const { return std::get_if<Array>(&m_value); }
  [[nodiscard]] Object* object() { return std::get_if<Object>(&m_value); }
  [[nodiscard]] Array* array() { return std::get_if<Array>(&m_value); }
  [[nodiscard]] bool isNull() const { return std::holds_alternative<Null>(m_value); }

  /// The member of that name when this is an object that has it, else null.
  [[nodiscard]] const JSONValue* member(std::string_view name) const;

  /// For showing: objects and arrays one member or element per line, two blanks a level, keys ascending, "/" as "\/".
  /// Scalars, and what cannot be written as JSON, give their description: `string("abc")`, `number(2.0)`, `null`.
  [[nodiscard]] std::string prettyPrinted() const;

  bool operator==(const JSONValue&) const = default;
  [[nodiscard]] std::size_t hash() const;

 private:
  std::variant<Null, std::string, double, bool, Object, Array> m_value;
};

}  // namespace varnel::json

template <>
struct std::hash<varnel::json::JSONValue> {
  std::size_t operator()(const varnel::json::JSONValue& value) const { return value.hash(); }
};
