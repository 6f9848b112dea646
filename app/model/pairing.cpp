// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <tuple>
#include <utility>

#include "app/client/api_client.h"
#include "app/model/app_model.h"
#include "core/live/pairing_address.h"
#include "core/wire/codec.h"

namespace varnel::model {
namespace {

constexpr std::int64_t kSupportedVersion = 1;

}  // namespace

QCoro::Task<> AppModel::pair(QString qrText) {
  const auto payload = wire::decode<wire::PairPayload>(qrText.toStdString());
  if (!payload) {
    report(QString::fromStdString(payload.error().message()));
    co_return;
  }
  if (payload->version != kSupportedVersion) {
    report(QStringLiteral("This pairing code version is not supported."));
    co_return;
  }
  if (const auto refusal = live::refusalOfPairingAddress(payload->baseURL)) {
    report(QString::fromStdString(*refusal));
    co_return;
  }
  const auto stop = m_lifetime.get_token();
  const auto claimed = co_await m_client->claim(payload->baseURL, payload->secret, m_surroundings.deviceName(), stop);
  if (stop.stop_requested()) co_return;
  if (!claimed) {
    // A refused secret says nothing of the token in use.
    if (!client::isCancelled(claimed.error())) report(QString::fromStdString(client::userText(claimed.error())));
    co_return;
  }
  m_client->setCredentials(*claimed);
  if (const auto failure = m_surroundings.credentialStore.save(*claimed)) {
    report(*failure);
    co_return;
  }
  assign(m_fields.credentials, std::optional(*claimed), &AppModel::credentialsChanged);
  assign(m_fields.tokenRefused, false, &AppModel::tokenRefusedChanged);
  assign(m_fields.refreshed, false, &AppModel::refreshedChanged);
  start();
}

void AppModel::unpair() {
  stop();
  m_surroundings.credentialStore.remove();
  m_pairing.request_stop();
  m_pairing = std::stop_source();
  m_client->setCredentials(std::nullopt);
  assign(m_fields.credentials, {}, &AppModel::credentialsChanged);
  forgetPairing();
  for (const char* key : {kPreferencesKey, kUsageCacheKey}) std::ignore = m_surroundings.defaults->remove(key);
  m_surroundings.usageResetNotifier.removePending();
  m_surroundings.conversationNotifier.clear();
  for (const auto& forget : m_surroundings.onUnpair) forget();
}

void AppModel::forgetPairing() {
  m_listed = false;
  m_optimisticMessages.clear();
  m_sessionLoadGeneration.forgetAll();
  const auto transcripts = std::exchange(m_fields.transcript, {});
  const auto requests = std::exchange(m_fields.pendingRequests, {});
  const auto queues = std::exchange(m_fields.queued, {});
  const auto preferences = std::exchange(m_fields.sessionPreferences, {});
  assign(m_fields.sessions, {}, &AppModel::sessionsChanged);
  assign(m_fields.rateLimit, {}, &AppModel::rateLimitChanged);
  assign(m_fields.usage, {}, &AppModel::usageChanged);
  assign(m_fields.archivedSessions, {}, &AppModel::archivedSessionsChanged);
  assign(m_fields.archivedSessionIds, {}, &AppModel::archivedSessionIdsChanged);
  assign(m_fields.searchResults, {}, &AppModel::searchResultsChanged);
  for (const auto& [sessionId, items] : transcripts) emit transcriptChanged(sessionId);
  for (const auto& [sessionId, list] : requests) emit pendingRequestsChanged(sessionId);
  for (const auto& [sessionId, list] : queues) emit queuedChanged(sessionId);
  for (const auto& [sessionId, chosen] : preferences) emit sessionPreferencesChanged(sessionId);
  assign(m_fields.tokenRefused, false, &AppModel::tokenRefusedChanged);
  assign(m_fields.refreshed, false, &AppModel::refreshedChanged);
}

}  // namespace varnel::model
