// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/devices.h"

#include "host/store/database.h"

namespace varnel::store {

namespace {

Device deviceAt(const Statement& row) {
  Device device{.id = row.text(0), .name = row.text(1), .createdAt = row.number(2), .lastSeenAt = std::nullopt};
  if (!row.isNull(3)) device.lastSeenAt = row.number(3);
  return device;
}

}  // namespace

void Devices::add(const Device& device, const Digest& tokenHash) {
  m_database.prepare("INSERT INTO devices(id, name, created_at, token_hash) VALUES (?, ?, ?, ?)")
      .bind(device.id, device.name, device.createdAt, bytesOf(tokenHash))
      .run();
}

std::optional<Device> Devices::findByToken(const Digest& tokenHash) const {
  std::optional<Device> found;
  auto rows = m_database.prepare("SELECT id, name, created_at, last_seen_at, token_hash FROM devices");
  while (rows.step()) {
    if (sameBytes(rows.text(4), bytesOf(tokenHash))) found = deviceAt(rows);
  }
  return found;
}

std::vector<Device> Devices::list() const {
  std::vector<Device> devices;
  auto rows = m_database.prepare("SELECT id, name, created_at, last_seen_at FROM devices ORDER BY created_at, id");
  while (rows.step()) devices.push_back(deviceAt(rows));
  return devices;
}

bool Devices::remove(std::string_view id) {
  m_database.prepare("DELETE FROM devices WHERE id = ?").bind(id).run();
  return m_database.changes() > 0;
}

bool Devices::rename(std::string_view id, std::string_view name) {
  m_database.prepare("UPDATE devices SET name = ? WHERE id = ?").bind(name, id).run();
  return m_database.changes() > 0;
}

void Devices::markSeen(std::string_view id, double at) {
  m_database.prepare("UPDATE devices SET last_seen_at = ? WHERE id = ?").bind(at, id).run();
}

}  // namespace varnel::store
