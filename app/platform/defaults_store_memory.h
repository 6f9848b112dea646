// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "app/platform/defaults_store.h"

namespace varnel::platform {

/// Forgets everything with the run: for a run that must leave the device's own values alone.
class MemoryDefaultsStore : public DefaultsStore {
 public:
  [[nodiscard]] std::optional<DefaultsValue> value(std::string_view key) const override {
    const auto entry = m_values.find(key);
    return entry == m_values.end() ? std::nullopt : std::optional(entry->second);
  }
  std::expected<void, std::error_code> set(std::string_view key, const DefaultsValue& value) override {
    m_values.insert_or_assign(std::string(key), value);
    return {};
  }
  std::expected<void, std::error_code> remove(std::string_view key) override {
    if (const auto entry = m_values.find(key); entry != m_values.end()) m_values.erase(entry);
    return {};
  }

 private:
  std::map<std::string, DefaultsValue, std::less<>> m_values;
};

}  // namespace varnel::platform
