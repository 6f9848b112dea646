// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/wire/catalogue.h"
#include "core/wire/pairing.h"
#include "core/wire/queue.h"
#include "core/wire/request.h"
#include "core/wire/search.h"
#include "core/wire/session.h"
#include "core/wire/transcript.h"
#include "core/wire/usage.h"

namespace varnel::model {

template <class Value>
using BySession = std::map<std::string, Value, std::less<>>;

/// What the model publishes, with its initial values; `AppModel` says what each field means.
struct Fields {
  std::optional<wire::PairingCredentials> credentials;
  std::vector<wire::SessionSummary> sessions;
  std::vector<wire::ProjectRecord> projects;
  std::vector<wire::ModelOption> models;
  std::optional<wire::RateLimitWindow> rateLimit;
  std::optional<wire::UsageEnvelope> usage;
  std::vector<wire::ArchivedSession> archivedSessions;
  std::set<std::string, std::less<>> archivedSessionIds;
  std::vector<wire::ConversationSearchResult> searchResults;
  bool searching = false;
  std::optional<std::string> archivedNextCursor;
  std::optional<std::string> searchNextCursor;
  BySession<std::vector<wire::TranscriptItem>> transcript;
  BySession<std::vector<wire::PendingRequest>> pendingRequests;
  BySession<std::vector<wire::QueuedMessage>> queued;
  BySession<wire::ConversationPreferences> sessionPreferences;
  bool connected = false;
  bool refreshed = false;
  bool tokenRefused = false;
  std::optional<double> lastContact;
  std::optional<std::string> selectedSessionId;
  std::optional<std::string> selectedTranscriptItemId;
  std::optional<QString> errorMessage;
};

/// Whether that changes the field. Where several fields change at once, all stand before anyone hears of one.
template <class T>
bool put(T& field, std::type_identity_t<T> value) {
  if (field == value) return false;
  field = std::move(value);
  return true;
}

}  // namespace varnel::model
