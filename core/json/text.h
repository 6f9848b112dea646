// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "core/json/decode_error.h"
#include "core/json/value.h"

namespace varnel::json {

/// The value that exactly one JSON text stands for. Fails on anything RFC 8259 does not allow, text that is not UTF-8,
/// lone surrogates, numbers beyond a double and nesting deeper than 512. Of a key that stands twice the later one
/// holds.
std::expected<JSONValue, DecodeError> parse(std::string_view text);

/// Compact text. Integral numbers are written without a fraction, others so that they read back equal. Fails when a
/// text is not UTF-8 or a number is not finite; the failure names the place.
std::expected<std::string, DecodeError> write(const JSONValue& value);

bool isUtf8(std::string_view text);

}  // namespace varnel::json
