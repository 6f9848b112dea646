// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/answers.h"

#include "host/store/database.h"

namespace varnel::store {

std::optional<Answers::Stored> Answers::find(std::string_view deviceId, std::string_view key,
                                             const Digest& request) const {
  auto row = m_database.prepare("SELECT status, body, request_hash FROM answers WHERE device_id = ? AND key = ?");
  if (!row.bind(deviceId, key).step()) return std::nullopt;
  return Stored{.status = static_cast<int>(row.integer(0)),
                .body = row.text(1),
                .sameRequest = sameBytes(row.text(2), bytesOf(request))};
}

void Answers::keep(const Entry& entry, double now) {
  // The device may have been revoked while its request ran: then there is nobody left to answer again.
  m_database
      .prepare(
          "INSERT OR REPLACE INTO answers(device_id, key, request_hash, status, body, created_at)"
          " SELECT id, ?2, ?3, ?4, ?5, ?6 FROM devices WHERE id = ?1")
      .bind(entry.deviceId, entry.key, bytesOf(entry.request), entry.status, entry.body, now)
      .run();
}

void Answers::forgetBefore(double createdAt) {
  m_database.prepare("DELETE FROM answers WHERE created_at < ?").bind(createdAt).run();
}

}  // namespace varnel::store
