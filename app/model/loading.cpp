// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/api_client.h"
#include "app/model/app_model.h"
#include "core/live/session_update.h"

namespace varnel::model {
namespace {

/// Whether there was no such entry or another one.
template <class Value>
bool replace(BySession<Value>& map, const std::string& sessionId, Value value) {
  const auto [entry, isNew] = map.try_emplace(sessionId);
  if (!isNew && entry->second == value) return false;
  entry->second = std::move(value);
  return true;
}

}  // namespace

QCoro::Task<> AppModel::loadSession(std::string sessionId) {
  return loadSessionUntil(m_pairing.get_token(), std::move(sessionId));
}

QCoro::Task<> AppModel::loadSessionUntil(std::stop_token stop, std::string sessionId) {
  const auto generation = m_loadGenerations.begin(sessionId);
  auto detail = co_await m_client->session(sessionId, stop);
  if (stop.stop_requested() || !m_loadGenerations.isCurrent(sessionId, generation)) co_return;
  if (!accept(detail)) co_return;
  store(sessionId, live::updateFrom(std::move(*detail), m_optimisticMessages[sessionId]));
}

void AppModel::store(const std::string& sessionId, live::SessionUpdate update) {
  // Everything stands before anyone hears of it: a listener may send, load or unpair.
  bool transcriptDiffers = false;
  if (update.transcript) {
    m_optimisticMessages[sessionId] = std::move(update.transcript->remainingOptimistic);
    transcriptDiffers = replace(m_transcript, sessionId, std::move(update.transcript->items));
  }
  bool requestsDiffer = false;
  if (update.pendingRequests) {
    requestsDiffer = replace(m_pendingRequests, sessionId, std::move(*update.pendingRequests));
  }
  const bool sessionsDiffer = update.session && live::place(m_sessions, std::move(*update.session));
  if (update.contact) touchContact();

  if (transcriptDiffers) emit transcriptChanged(sessionId);
  if (requestsDiffer) emit pendingRequestsChanged(sessionId);
  if (sessionsDiffer) emit sessionsChanged();
}

}  // namespace varnel::model
