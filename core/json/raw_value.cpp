// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/raw_value.h"

#include "core/json/reader.h"
#include "core/json/text.h"

namespace varnel::json {

RawValue::RawValue(const JSONValue& value) {
  auto text = write(value);
  if (!text) return;
  m_size = text->size();
  m_whole = std::make_shared<const std::string>(*std::move(text));
}

std::expected<RawValue, DecodeError> RawValue::parse(std::string text) {
  auto whole = std::make_shared<const std::string>(std::move(text));
  Reader in(*whole);
  std::string_view value;
  if (!in.skipValue(value) || !in.finish()) return std::unexpected(std::move(in.error()));
  return share(std::move(whole), value);
}

RawValue RawValue::share(std::shared_ptr<const std::string> whole, std::string_view checkedPiece) {
  RawValue result;
  result.m_begin = static_cast<std::size_t>(checkedPiece.data() - whole->data());
  result.m_size = checkedPiece.size();
  result.m_whole = std::move(whole);
  return result;
}

std::string_view RawValue::text() const {
  if (m_whole == nullptr) return "null";
  return std::string_view(*m_whole).substr(m_begin, m_size);
}

JSONValue RawValue::value() const {
  return json::parse(text()).value_or(JSONValue());
}

bool RawValue::operator==(const RawValue& other) const {
  return text() == other.text() || value() == other.value();
}

JSONValue::Object RawObject::value() const {
  const JSONValue unfolded = m_value.value();
  const auto* members = unfolded.object();
  return members == nullptr ? JSONValue::Object() : *members;
}

}  // namespace varnel::json
