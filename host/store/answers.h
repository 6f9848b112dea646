// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/store/digest.h"

namespace varnel::store {

class Database;

/// What was answered to requests that carried a key, so that a repeated one is answered and not done again.
class Answers {
 public:
  struct Stored {
    int status = 0;
    std::string body;
    bool sameRequest = false;  ///< the request that was answered is the one asked about
  };

  explicit Answers(const Database& database) : m_database(database) {}

  [[nodiscard]] std::optional<Stored> find(std::string_view deviceId, std::string_view key,
                                           const Digest& request) const;
  struct Entry {
    std::string_view deviceId;
    std::string_view key;
    const Digest& request;
    int status;
    std::string_view body;
  };
  void keep(const Entry& entry, double now);
  void forgetBefore(double createdAt);

 private:
  const Database& m_database;
};

}  // namespace varnel::store
