// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Numbers between JSON text and machine types. Texts given here follow the JSON grammar already.
namespace varnel::json {

/// The nearest double; zero (with the sign) for what is too small, nothing for what is too large.
std::optional<double> doubleFromNumber(std::string_view text);

enum class IntegerFault { None, NotIntegral, OutOfRange };
struct IntegerResult {
  std::int64_t value = 0;
  IntegerFault fault = IntegerFault::None;
};
/// Exact for every spelling: `9007199254740993`, `1.0`, `12.5e1`.
IntegerResult integerFromNumber(std::string_view text);

/// As JSON: the shortest text that reads back equal, integral values without a fraction. The value must be finite.
std::string numberText(double value);

/// As a description for people: `2.0`, `0.1`, `1e-05`, `1e+300`, `nan`.
std::string describeNumber(double value);

}  // namespace varnel::json
