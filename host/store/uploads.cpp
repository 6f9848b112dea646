// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/uploads.h"

#include "host/store/database.h"

namespace varnel::store {

void Uploads::add(const Stored& upload, double createdAt) {
  const auto& record = upload.record;
  m_database
      .prepare("INSERT INTO uploads(id, session_id, kind, name, mime_type, size, created_at) VALUES (?,?,?,?,?,?,?)")
      .bind(record.id, upload.sessionId, record.kind, record.name, record.mimeType, record.size, createdAt)
      .run();
}

std::optional<Uploads::Stored> Uploads::find(std::string_view id) const {
  auto row = m_database.prepare("SELECT id, kind, name, mime_type, size, session_id FROM uploads WHERE id = ?");
  if (!row.bind(id).step()) return std::nullopt;
  return Stored{.record = {.id = row.text(0),
                           .kind = row.text(1),
                           .name = row.text(2),
                           .mimeType = row.text(3),
                           .size = row.integer(4)},
                .sessionId = row.text(5)};
}

void Uploads::markSent(std::string_view id) {
  m_database.prepare("UPDATE uploads SET sent = 1 WHERE id = ?").bind(id).run();
}

void Uploads::markUnsent(std::string_view id, double createdAt) {
  m_database.prepare("UPDATE uploads SET sent = 0, created_at = ? WHERE id = ?").bind(createdAt, id).run();
}

std::int64_t Uploads::unsentBytes() const {
  auto row = m_database.prepare("SELECT coalesce(sum(size), 0) FROM uploads WHERE NOT sent");
  row.step();
  return row.integer(0);
}

std::vector<std::string> Uploads::takeUnsentBefore(double createdAt) {
  std::vector<std::string> taken;
  auto rows = m_database.prepare("DELETE FROM uploads WHERE NOT sent AND created_at < ? RETURNING id");
  rows.bind(createdAt);
  while (rows.step()) taken.push_back(rows.text(0));
  return taken;
}

std::vector<std::string> Uploads::ids() const {
  std::vector<std::string> ids;
  auto rows = m_database.prepare("SELECT id FROM uploads");
  while (rows.step()) ids.push_back(rows.text(0));
  return ids;
}

}  // namespace varnel::store
