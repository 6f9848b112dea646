// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <tuple>

#include "app/model/app_model.h"
#include "core/live/rate_limit.h"
#include "core/wire/codec.h"

namespace varnel::model {
namespace {

/// The record kept under that key; nothing when there is none that can be read.
template <class Record>
std::optional<Record> saved(const platform::DefaultsStore& defaults, const char* key) {
  const auto data = defaults.get<platform::Data>(key);
  if (!data) return std::nullopt;
  auto record = wire::decode<Record>(data->bytes);
  return record ? std::optional(*std::move(record)) : std::nullopt;
}

}  // namespace

void AppModel::readSaved() {
  const auto& defaults = *m_surroundings.defaults;
  m_fields.sessionPreferences =
      saved<wire::PreferencesBySession>(defaults, kPreferencesKey).value_or(wire::PreferencesBySession());
  m_fields.usage = saved<wire::UsageEnvelope>(defaults, kUsageCacheKey);
  if (m_fields.usage) m_fields.rateLimit = live::shownWindow(*m_fields.usage);
}

std::optional<wire::ConversationPreferences> AppModel::preferences(std::string_view sessionId) const {
  if (const auto* summary = session(sessionId); summary && summary->turnPreferences) return summary->turnPreferences;
  const auto chosen = m_fields.sessionPreferences.find(sessionId);
  return chosen == m_fields.sessionPreferences.end() ? std::nullopt : std::optional(chosen->second);
}

void AppModel::setSessionPreferences(const std::string& sessionId, wire::ConversationPreferences preferences) {
  const auto [entry, isNew] = m_fields.sessionPreferences.try_emplace(sessionId);
  const bool differs = put(entry->second, std::move(preferences)) || isNew;
  saveSessionPreferences();
  if (differs) emit sessionPreferencesChanged(sessionId);
}

void AppModel::saveSessionPreferences() const {
  const auto text = wire::encode(m_fields.sessionPreferences);
  if (text) std::ignore = m_surroundings.defaults->set(kPreferencesKey, platform::Data{*text});
}

void AppModel::markRead(const std::string& sessionId, const std::optional<std::string>& through) {
  if (!through) return;
  auto positions =
      m_surroundings.defaults->get<platform::Dictionary>(kReadPositionsKey).value_or(platform::Dictionary());
  const auto [position, isNew] = positions.try_emplace(sessionId, *through);
  if (!isNew && position->second == *through) return;
  position->second = *through;
  std::ignore = m_surroundings.defaults->set(kReadPositionsKey, positions);
}

std::optional<std::string> AppModel::lastReadItemID(const std::string& sessionId) const {
  const auto positions =
      m_surroundings.defaults->get<platform::Dictionary>(kReadPositionsKey).value_or(platform::Dictionary());
  const auto position = positions.find(sessionId);
  return position == positions.end() ? std::nullopt : std::optional(position->second);
}

}  // namespace varnel::model
