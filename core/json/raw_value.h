// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <functional>
#include <string>
#include <string_view>

#include "core/json/decode_error.h"
#include "core/json/value.h"

namespace varnel::json {

/// A JSON value kept as the text it came in, checked in full, and unfolded where it is looked at. Behaves as the
/// `JSONValue` it stands for: equality, hash and encoding are those of the unfolded value. Holding the text costs a
/// tenth of what the unfolded tree does, and most tool details are never opened.
class RawValue {
 public:
  /// The JSON value null.
  RawValue() = default;
  /// What JSON cannot hold (a number that is not finite, text that is not UTF-8) makes it null.
  RawValue(const JSONValue& value);

  /// Fails unless the whole text is exactly one JSON value.
  static std::expected<RawValue, DecodeError> parse(std::string text);
  /// Takes a text that a reader has found to be exactly one value.
  static RawValue adopt(std::string checkedText);

  /// Unfolds the text; costs one pass over it at each call.
  [[nodiscard]] JSONValue value() const;
  [[nodiscard]] const std::string& text() const { return m_text; }

  bool operator==(const RawValue& other) const;
  [[nodiscard]] std::size_t hash() const { return value().hash(); }

 private:
  std::string m_text = "null";
};

}  // namespace varnel::json

template <>
struct std::hash<varnel::json::RawValue> {
  std::size_t operator()(const varnel::json::RawValue& value) const { return value.hash(); }
};
