// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/json/value.h"

/// Looking into what the agent sent. Nothing here fails: what is missing or of another type is absent.
namespace varnel::agent::codex {

using json::JSONValue;

/// The member, or the value null.
const JSONValue& memberOf(const JSONValue& value, std::string_view name);
/// Empty when there is none.
std::string textOf(const JSONValue& value, std::string_view name);
std::optional<std::string> optionalTextOf(const JSONValue& value, std::string_view name);
std::optional<double> numberOf(const JSONValue& value, std::string_view name);
/// Rounded; nothing beyond what a double counts exactly.
std::optional<std::int64_t> wholeOf(const JSONValue& value, std::string_view name);
bool flagOf(const JSONValue& value, std::string_view name);
/// Without elements when there is none.
const JSONValue::Array& listOf(const JSONValue& value, std::string_view name);
const JSONValue::Object& objectOf(const JSONValue& value);
/// Null when absent.
JSONValue nullable(const std::optional<std::string>& text);

}  // namespace varnel::agent::codex
