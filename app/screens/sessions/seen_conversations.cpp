// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/seen_conversations.h"

#include <charconv>
#include <utility>

namespace varnel::screens {
namespace {

constexpr std::string_view kKey = "Varnel.SeenConversations";

std::string textOf(double moment) {
  return std::to_string(moment);
}

double momentIn(const std::string& text) {
  double moment = 0;
  std::from_chars(text.data(), text.data() + text.size(), moment);
  return moment;
}

}  // namespace

SeenConversations::SeenConversations(std::shared_ptr<platform::DefaultsStore> defaults)
    : m_defaults(std::move(defaults)) {
  if (auto stored = m_defaults->get<platform::Dictionary>(kKey)) {
    m_seen = *std::move(stored);
    m_known = true;
  }
}

void SeenConversations::listed(const std::vector<wire::SessionSummary>& sessions) {
  if (sessions.empty()) return;
  platform::Dictionary seen;
  for (const auto& session : sessions) {
    const auto entry = m_seen.find(session.id);
    if (entry != m_seen.end()) {
      seen.insert(*entry);
    } else if (!m_known) {
      seen.emplace(session.id, textOf(session.updatedAt));
    }
  }
  m_known = true;
  if (seen == m_seen) return;
  m_seen = std::move(seen);
  save();
}

void SeenConversations::see(const wire::SessionSummary& session) {
  if (!isUnread(session)) return;
  m_seen.insert_or_assign(session.id, textOf(session.updatedAt));
  save();
}

bool SeenConversations::isUnread(const wire::SessionSummary& session) const {
  const auto entry = m_seen.find(session.id);
  return entry == m_seen.end() || momentIn(textOf(session.updatedAt)) > momentIn(entry->second);
}

void SeenConversations::forget() {
  m_seen.clear();
  m_known = false;
  // A dot too many is all that a failure costs.
  static_cast<void>(m_defaults->remove(kKey));
}

void SeenConversations::save() {
  static_cast<void>(m_defaults->set(kKey, m_seen));
}

}  // namespace varnel::screens
