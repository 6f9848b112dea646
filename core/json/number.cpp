// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace varnel::json {

namespace {

/// A decimal number as its significant digits, without zeros at either end, times a power of ten.
struct Decimal {
  bool negative = false;
  std::string digits;
  std::int64_t exponent = 0;
};

std::int64_t clampedExponent(std::string_view text) {
  constexpr std::int64_t kFar = 1'000'000'000'000;
  std::int64_t value = 0;
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (fault != std::errc{} || value > kFar) value = kFar;
  return negative ? -value : value;
}

Decimal decimalFrom(std::string_view text) {
  Decimal result;
  if (text.starts_with('-')) {
    result.negative = true;
    text.remove_prefix(1);
  }
  if (const auto e = text.find_first_of("eE"); e != std::string_view::npos) {
    result.exponent = clampedExponent(text.substr(e + 1));
    text = text.substr(0, e);
  }
  const auto dot = text.find('.');
  result.digits = text.substr(0, dot);
  if (dot != std::string_view::npos) {
    result.digits += text.substr(dot + 1);
    result.exponent -= static_cast<std::int64_t>(text.size() - dot - 1);
  }
  const auto last = result.digits.find_last_not_of('0');
  if (last == std::string::npos) return {.negative = result.negative, .digits = {}, .exponent = 0};
  result.exponent += static_cast<std::int64_t>(result.digits.size() - 1 - last);
  result.digits.erase(last + 1);
  result.digits.erase(0, result.digits.find_first_not_of('0'));
  return result;
}

}  // namespace

std::optional<double> doubleFromNumber(std::string_view text) {
  double value = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (fault == std::errc{}) return value;
  // from_chars says "out of range" for both ends alike.
  const Decimal decimal = decimalFrom(text);
  if (decimal.exponent + static_cast<std::int64_t>(decimal.digits.size()) > 0) return std::nullopt;
  return decimal.negative ? -0.0 : 0.0;
}

IntegerResult integerFromNumber(std::string_view text) {
  Decimal decimal = decimalFrom(text);
  if (decimal.digits.empty()) return {};
  if (decimal.exponent < 0) return {.fault = IntegerFault::NotIntegral};
  constexpr std::int64_t kMostDigits = 19;
  if (decimal.exponent + static_cast<std::int64_t>(decimal.digits.size()) > kMostDigits) {
    return {.fault = IntegerFault::OutOfRange};
  }
  decimal.digits.append(static_cast<std::size_t>(decimal.exponent), '0');
  if (decimal.negative) decimal.digits.insert(0, "-");
  IntegerResult result;
  const auto [end, fault] =
      std::from_chars(decimal.digits.data(), decimal.digits.data() + decimal.digits.size(), result.value);
  if (fault != std::errc{}) result.fault = IntegerFault::OutOfRange;
  return result;
}

std::string numberText(double value) {
  std::array<char, 32> buffer{};
  constexpr double kExactIntegers = 9'007'199'254'740'992.0;  // 2^53
  const bool integral = std::abs(value) <= kExactIntegers && std::trunc(value) == value;
  const auto [end, fault] = integral && (value != 0 || !std::signbit(value))
                                ? std::to_chars(buffer.begin(), buffer.end(), static_cast<std::int64_t>(value))
                                : std::to_chars(buffer.begin(), buffer.end(), value);
  return {buffer.data(), end};
}

std::string describeNumber(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  std::array<char, 64> buffer{};
  constexpr double kLargestPlain = 18'014'398'509'481'984.0;  // 2^54
  const double size = std::abs(value);
  const bool plain = size == 0 || (size >= 1e-4 && size <= kLargestPlain);
  const auto [end, fault] = std::to_chars(buffer.begin(), buffer.end(), value,
                                          plain ? std::chars_format::fixed : std::chars_format::scientific);
  std::string text(buffer.data(), end);
  if (plain && text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace varnel::json
