// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/wire/catalogue.h"

namespace varnel::store {

class Database;

/// The files that phones have sent, as rows; the bytes lie beside the database under the same id.
class Uploads {
 public:
  struct Stored {
    wire::UploadedAttachment record;
    std::string sessionId;
  };

  explicit Uploads(const Database& database) : m_database(database) {}

  void add(const Stored& upload, double createdAt);
  [[nodiscard]] std::optional<Stored> find(std::string_view id) const;
  /// A file that went out with a message is kept; the agent refers to it.
  void markSent(std::string_view id);
  /// It goes out with no message after all; its day begins anew.
  void markUnsent(std::string_view id, double createdAt);
  /// Bytes of all files that were never sent.
  [[nodiscard]] std::int64_t unsentBytes() const;
  /// Forgets files that were never sent and are older than that; their ids.
  std::vector<std::string> takeUnsentBefore(double createdAt);
  [[nodiscard]] std::vector<std::string> ids() const;

 private:
  const Database& m_database;
};

}  // namespace varnel::store
