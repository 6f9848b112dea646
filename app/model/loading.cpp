// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/api_client.h"
#include "app/model/app_model.h"
#include "core/live/session_update.h"

namespace varnel::model {
namespace {

/// `put`, where the first entry of a conversation is a change too.
template <class Value>
bool putFor(BySession<Value>& map, const std::string& sessionId, Value value) {
  const auto [entry, isNew] = map.try_emplace(sessionId);
  return put(entry->second, std::move(value)) || isNew;
}

}  // namespace

QCoro::Task<> AppModel::loadSession(std::string sessionId) {
  return loadSessionUntil(m_pairing.get_token(), std::move(sessionId));
}

QCoro::Task<> AppModel::loadSessionUntil(std::stop_token stop, std::string sessionId) {
  const auto generation = m_sessionLoadGeneration.begin(sessionId);
  auto detail = co_await m_client->session(sessionId, stop);
  if (stop.stop_requested() || !m_sessionLoadGeneration.isCurrent(sessionId, generation)) co_return;
  if (!accept(detail)) co_return;
  store(sessionId, live::updateFrom(std::move(*detail), m_optimisticMessages[sessionId]));
}

void AppModel::store(const std::string& sessionId, live::SessionUpdate update) {
  // Everything stands before anyone hears of it: a listener may send, load or unpair.
  bool transcriptDiffers = false;
  if (update.transcript) {
    m_optimisticMessages[sessionId] = std::move(update.transcript->remainingOptimistic);
    transcriptDiffers = putFor(m_fields.transcript, sessionId, std::move(update.transcript->items));
  }
  bool requestsDiffer = false;
  if (update.pendingRequests) {
    requestsDiffer = putFor(m_fields.pendingRequests, sessionId, std::move(*update.pendingRequests));
  }
  const bool queueDiffers = update.queued && putFor(m_fields.queued, sessionId, std::move(*update.queued));
  const bool sessionsDiffer = update.session && live::place(m_fields.sessions, std::move(*update.session));
  const bool contactDiffers = update.contact && put(m_fields.lastContact, m_surroundings.clock.now());

  if (transcriptDiffers) emit transcriptChanged(sessionId);
  if (requestsDiffer) emit pendingRequestsChanged(sessionId);
  if (queueDiffers) emit queuedChanged(sessionId);
  if (sessionsDiffer) emit sessionsChanged();
  if (contactDiffers) emit lastContactChanged();
  announce();
}

}  // namespace varnel::model
