// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/store/digest.h"

namespace varnel::store {

class Database;

/// A phone that has been let in. Its token is known only as a hash.
struct Device {
  std::string id;
  std::string name;
  double createdAt = 0;  ///< seconds since 1970, UTC
  std::optional<double> lastSeenAt;
};

class Devices {
 public:
  explicit Devices(const Database& database) : m_database(database) {}

  void add(const Device& device, const Digest& tokenHash);
  /// Compares with every device's hash, in constant time for each.
  [[nodiscard]] std::optional<Device> findByToken(const Digest& tokenHash) const;
  [[nodiscard]] std::vector<Device> list() const;
  /// False when there is no such device. Its stored answers go with it.
  bool remove(std::string_view id);
  bool rename(std::string_view id, std::string_view name);
  void markSeen(std::string_view id, double at);

 private:
  const Database& m_database;
};

}  // namespace varnel::store
