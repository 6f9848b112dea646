// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/raw_value.h"

#include <cstring>

#include "core/json/reader.h"
#include "core/json/text.h"

namespace varnel::json {

RawValue::RawValue(const JSONValue& value) {
  if (const auto text = write(value)) *this = copy(*text);
}

std::expected<RawValue, DecodeError> RawValue::parse(std::string text) {
  auto whole = std::make_shared<const std::string>(std::move(text));
  Reader in(*whole);
  std::string_view value;
  if (!in.skipValue(value) || !in.finish()) return std::unexpected(std::move(in.error()));
  return share(std::move(whole), value);
}

RawValue RawValue::share(std::shared_ptr<const void> owner, std::string_view checkedText) {
  RawValue result;
  result.m_owner = std::move(owner);
  result.m_text = checkedText;
  return result;
}

RawValue RawValue::copy(std::string_view checkedText) {
  // NOLINTNEXTLINE(modernize-avoid-c-arrays): how many bytes is known only here
  auto bytes = std::make_shared_for_overwrite<char[]>(checkedText.size());
  std::memcpy(bytes.get(), checkedText.data(), checkedText.size());
  const std::string_view text(bytes.get(), checkedText.size());
  return share(std::move(bytes), text);
}

std::string_view RawValue::text() const {
  return m_owner == nullptr ? "null" : m_text;
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
