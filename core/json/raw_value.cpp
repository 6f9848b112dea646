// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/raw_value.h"

#include "core/json/reader.h"
#include "core/json/text.h"

namespace varnel::json {

RawValue::RawValue(const JSONValue& value) : m_text(write(value).value_or("null")) {}

std::expected<RawValue, DecodeError> RawValue::parse(std::string text) {
  Reader in(text);
  std::string_view value;
  if (!in.skipValue(value) || !in.finish()) return std::unexpected(std::move(in.error()));
  return adopt(std::move(text));
}

RawValue RawValue::adopt(std::string checkedText) {
  RawValue result;
  result.m_text = std::move(checkedText);
  return result;
}

JSONValue RawValue::value() const {
  return json::parse(m_text).value_or(JSONValue());
}

bool RawValue::operator==(const RawValue& other) const {
  return m_text == other.m_text || value() == other.value();
}

}  // namespace varnel::json
