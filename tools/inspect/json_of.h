// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <expected>
#include <string>
#include <utility>
#include <vector>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "tools/inspect/subject.h"

namespace varnel::inspect {

inline Outcome outcomeOf(std::expected<std::string, json::DecodeError> text) {
  if (!text) return std::unexpected(text.error().message());
  return *std::move(text);
}

template <class Record>
Outcome jsonOf(const Record& record) {
  return outcomeOf(wire::encode(record));
}
inline Outcome jsonOf(const json::JSONValue& value) {
  return outcomeOf(json::write(value));
}

/// What tells each record of a list from the others.
template <class Records>
json::JSONValue identitiesOf(const Records& records) {
  json::JSONValue::Array identities;
  for (const auto& record : records) identities.emplace_back(record.identity());
  return identities;
}

}  // namespace varnel::inspect
