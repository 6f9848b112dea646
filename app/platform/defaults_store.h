// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>

namespace varnel::platform {

/// Bytes that mean something to their owner alone.
struct Data {
  std::string bytes;
  bool operator==(const Data&) const = default;
};

/// Texts by name, kept as such and not inside other bytes.
using Dictionary = std::map<std::string, std::string, std::less<>>;

using DefaultsValue = std::variant<bool, std::string, Data, Dictionary>;

/// Small values by key that outlive the program, each in one of four forms. Main thread only; every call is done when
/// it returns, so what `set` acknowledged is there after a kill. Keys begin with a letter.
class DefaultsStore {
 public:
  virtual ~DefaultsStore() = default;

  /// Nothing when nothing readable is stored there.
  [[nodiscard]] virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;
  /// Replaces what is stored, whatever its form. On failure (a full disk) that stands.
  virtual std::expected<void, std::error_code> set(std::string_view key, const DefaultsValue& value) = 0;
  /// Removing what is not there is no failure.
  virtual std::expected<void, std::error_code> remove(std::string_view key) = 0;

  /// The value when it has that form: a value of another form counts as missing.
  template <class Form>
  [[nodiscard]] std::optional<Form> get(std::string_view key) const {
    auto stored = value(key);
    if (!stored || !std::holds_alternative<Form>(*stored)) return std::nullopt;
    return std::get<Form>(std::move(*stored));
  }
};

}  // namespace varnel::platform
