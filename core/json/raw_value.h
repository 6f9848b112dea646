// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/json/decode_error.h"
#include "core/json/value.h"

namespace varnel::json {

/// A JSON value kept as the text it came in, checked in full, and unfolded where it is looked at. Behaves as the
/// `JSONValue` it stands for: equality, hash and encoding are those of the unfolded value. Most tool details are never
/// opened, and a tree costs ten times the memory of its text.
///
/// Values that came in one answer share its text, which lives as long as any of them.
class RawValue {
 public:
  /// The JSON value null.
  RawValue() = default;
  /// What JSON cannot hold (a number that is not finite, text that is not UTF-8) makes it null.
  RawValue(const JSONValue& value);

  /// Fails unless the whole text is exactly one JSON value.
  static std::expected<RawValue, DecodeError> parse(std::string text);
  /// Takes a text that a reader has found to be exactly one value; `owner` keeps it alive.
  static RawValue share(std::shared_ptr<const void> owner, std::string_view checkedText);
  /// The same with a copy of the text.
  static RawValue copy(std::string_view checkedText);

  /// Unfolds the text; costs one pass over it at each call.
  [[nodiscard]] JSONValue value() const;
  /// Valid as long as this value, or another that shares the text.
  [[nodiscard]] std::string_view text() const;

  bool operator==(const RawValue& other) const;
  [[nodiscard]] std::size_t hash() const { return value().hash(); }

 private:
  std::shared_ptr<const void> m_owner;  ///< none for null
  std::string_view m_text;
};

/// The same for what must be an object: its members by name.
class RawObject {
 public:
  /// An object without members.
  RawObject() = default;
  RawObject(const JSONValue::Object& members) : m_value(JSONValue(members)) {}
  /// Takes an object that a reader has checked.
  explicit RawObject(RawValue checkedObject) : m_value(std::move(checkedObject)) {}

  [[nodiscard]] JSONValue::Object value() const;

  bool operator==(const RawObject& other) const { return value() == other.value(); }
  [[nodiscard]] std::size_t hash() const { return JSONValue(value()).hash(); }

 private:
  RawValue m_value;
};

}  // namespace varnel::json

template <>
struct std::hash<varnel::json::RawValue> {
  std::size_t operator()(const varnel::json::RawValue& value) const { return value.hash(); }
};

template <>
struct std::hash<varnel::json::RawObject> {
  std::size_t operator()(const varnel::json::RawObject& value) const { return value.hash(); }
};
