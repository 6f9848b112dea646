// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "app/client/client_error.h"
#include "app/model/fields.h"
#include "app/model/surroundings.h"
#include "core/live/event_rules.h"
#include "core/live/load_generations.h"

namespace varnel::client {
class APIClient;
class EventStream;
}  // namespace varnel::client

namespace varnel::live {
struct SessionUpdate;
}

namespace varnel::model {

/// The one object that owns what the application knows of its bridge. It lives on the main thread, where all its
/// operations run and suspend; there is exactly one, made by the composition root and handed to every screen.
///
/// Screens read the published fields, hear of each change by its signal, and change state by the verbs alone. No verb
/// fails to its caller: refreshing, loading and the live loop are silent, the others show a failure in `errorMessage`.
/// Destroying the model stops all it has under way; nothing touches it afterwards.
class AppModel : public QObject {
  Q_OBJECT

 public:
  static constexpr const char* kPreferencesKey = "Varnel.SessionPreferences";
  static constexpr const char* kReadPositionsKey = "Varnel.ReadPositions";
  static constexpr const char* kUsageCacheKey = "Varnel.UsageCache";

  /// Loads the pairing and what the last run saved, and takes up its live activity; does not contact the bridge.
  explicit AppModel(Surroundings surroundings, QObject* parent = nullptr);
  ~AppModel() override;

  // ---- Published fields: each has a signal of its name below -------------------------------------------------------

  /// The pairing in force; absent means that the application is not paired.
  [[nodiscard]] const std::optional<wire::PairingCredentials>& credentials() const { return m_fields.credentials; }
  [[nodiscard]] bool isPaired() const { return m_fields.credentials.has_value(); }
  /// The conversations as the bridge last listed them, in its order.
  [[nodiscard]] const std::vector<wire::SessionSummary>& sessions() const { return m_fields.sessions; }
  /// The first conversation of that id, or null; valid until the next change of `sessions`.
  [[nodiscard]] const wire::SessionSummary* session(std::string_view id) const;
  [[nodiscard]] const std::vector<wire::ProjectRecord>& projects() const { return m_fields.projects; }
  [[nodiscard]] const std::vector<wire::ModelOption>& models() const { return m_fields.models; }
  [[nodiscard]] const std::optional<wire::RateLimitWindow>& rateLimit() const { return m_fields.rateLimit; }
  [[nodiscard]] const std::optional<wire::UsageEnvelope>& usage() const { return m_fields.usage; }
  /// The archive as far as it was loaded; a cursor when there is more of it.
  [[nodiscard]] const std::vector<wire::ArchivedSession>& archivedSessions() const { return m_fields.archivedSessions; }
  [[nodiscard]] const std::set<std::string, std::less<>>& archivedSessionIds() const {
    return m_fields.archivedSessionIds;
  }
  [[nodiscard]] const std::optional<std::string>& archivedNextCursor() const { return m_fields.archivedNextCursor; }
  /// What the last search found, as far as it was loaded; a cursor when there is more of it.
  [[nodiscard]] const std::vector<wire::ConversationSearchResult>& searchResults() const {
    return m_fields.searchResults;
  }
  [[nodiscard]] const std::optional<std::string>& searchNextCursor() const { return m_fields.searchNextCursor; }
  [[nodiscard]] bool isSearching() const { return m_fields.searching; }
  /// Empty for a conversation that was not loaded yet; `isLoaded` tells the two apart. Sent messages that the bridge
  /// has not echoed stand at the end.
  [[nodiscard]] const std::vector<wire::TranscriptItem>& transcript(std::string_view sessionId) const;
  [[nodiscard]] bool isLoaded(std::string_view sessionId) const { return m_fields.pendingRequests.contains(sessionId); }
  /// Approvals and questions, resolved ones included for as long as the bridge names them.
  [[nodiscard]] const std::vector<wire::PendingRequest>& pendingRequests(std::string_view sessionId) const;
  /// The messages that the bridge sends once the running turn has ended; null while it is not known to keep any.
  [[nodiscard]] const std::vector<wire::QueuedMessage>* queued(std::string_view sessionId) const;
  /// What the user chose for each conversation; `preferences` says what is in force.
  [[nodiscard]] const BySession<wire::ConversationPreferences>& sessionPreferences() const {
    return m_fields.sessionPreferences;
  }
  /// The event stream is open, or the last full refresh succeeded.
  [[nodiscard]] bool isConnected() const { return m_fields.connected; }
  /// A refresh of this pairing has ended, well or not: what there is to know of the lists is known.
  [[nodiscard]] bool isRefreshed() const { return m_fields.refreshed; }
  /// The bridge refuses this device's token; it stays so until an answer shows otherwise or the pairing changes.
  [[nodiscard]] bool isTokenRefused() const { return m_fields.tokenRefused; }
  /// When the bridge was last heard from, in seconds since 1970.
  [[nodiscard]] std::optional<double> lastContact() const { return m_fields.lastContact; }
  /// The conversation that is open or that a link asked for, and the item to bring into view in it.
  [[nodiscard]] const std::optional<std::string>& selectedSessionId() const { return m_fields.selectedSessionId; }
  [[nodiscard]] const std::optional<std::string>& selectedTranscriptItemId() const {
    return m_fields.selectedTranscriptItemId;
  }
  /// The text of the last failure that was reported and not yet dismissed.
  [[nodiscard]] const std::optional<QString>& errorMessage() const { return m_fields.errorMessage; }
  [[nodiscard]] bool hasErrorMessage() const { return m_fields.errorMessage.has_value(); }
  [[nodiscard]] QString errorText() const { return m_fields.errorMessage.value_or(QString()); }

  // Not published: no signal tells of these.
  /// Highest number of an event seen in this run; outlives an unpairing.
  [[nodiscard]] std::int64_t lastSequence() const { return m_lastSequence; }
  [[nodiscard]] bool isStarted() const { return m_started; }
  /// The text that was searched for last, trimmed.
  [[nodiscard]] const std::string& currentSearchQuery() const { return m_currentSearchQuery; }

  // ---- Verbs -------------------------------------------------------------------------------------------------------

  /// Opens the live connection and refreshes everything; does nothing while started or while not paired.
  void start();
  /// Closes the live connection. What was loaded stays.
  void stop();
  /// The way to the bridge may be another one now (new network, woken from sleep): the stream in use counts as broken.
  void pathChanged();
  /// Re-reads conversations, projects and models; the rate limit beside them, not waited for, when asked to.
  QCoro::Task<> refresh(bool includeRateLimit);
  QCoro::Task<> refreshRateLimit();
  /// Shows a failure to the user, a very long one cut; a cancellation is none.
  void report(const client::ClientError& error);
  void report(const QString& text);
  void clearErrorMessage();

  /// Brings one conversation up to date. Of several loads under way only the one begun last may store its answer.
  QCoro::Task<> loadSession(std::string sessionId);
  /// Sends a message, shown at once, or starts a goal; white space around the text is dropped. True when the bridge
  /// took it, false when the text is blank or the failure has been reported.
  QCoro::Task<bool> sendMessage(std::string sessionId, std::string text, wire::ConversationPreferences preferences,
                                std::vector<wire::UploadedAttachment> attachments, bool asGoal);
  /// Ends activity tracking, here whatever the bridge says to it, and refreshes everything.
  QCoro::Task<> clearActivity();

  /// What the next turn of a conversation goes with: what the bridge reports of its turn, else the user's choice.
  [[nodiscard]] std::optional<wire::ConversationPreferences> preferences(std::string_view sessionId) const;
  /// Changes the user's choice for a conversation and saves all of them.
  void setSessionPreferences(const std::string& sessionId, wire::ConversationPreferences preferences);
  void saveSessionPreferences() const;
  /// Notes that a conversation has been read through that item; nothing for no item.
  void markRead(const std::string& sessionId, const std::optional<std::string>& through);
  [[nodiscard]] std::optional<std::string> lastReadItemID(const std::string& sessionId) const;

  /// Claims the pairing that a scanned or pasted code stands for, stores it and starts.
  QCoro::Task<> pair(QString qrText);
  /// Forgets the pairing, here and in the store, and everything that came with it; the bridge need not answer.
  void unpair();

  /// Shows the new name at once and takes it back when the bridge refuses it. False for a blank name and for a
  /// conversation that is not listed, too.
  QCoro::Task<bool> rename(std::string sessionId, std::string name);
  /// True when the bridge did it; the list follows then, and the live activity ends with an archived conversation.
  QCoro::Task<bool> archive(std::string sessionId);
  QCoro::Task<bool> unarchive(std::string sessionId);
  /// The first page of the archive, or the page after those that are loaded.
  QCoro::Task<> loadArchived(bool loadMore);
  /// Of several searches only the one begun last may store its answer; a blank query clears the results.
  QCoro::Task<> search(std::string query);
  QCoro::Task<> loadMoreSearchResults();

  /// Opens "varnel://session/ID"; anything else is ignored.
  void handle(std::string_view url);
  void selectSession(std::optional<std::string> sessionId);
  void selectTranscriptItem(std::optional<std::string> itemId);

  /// For what concerns one conversation and no shared state: interrupt, resolve, upload, settings, pin, create. Call
  /// `loadSession` or `refresh` afterwards and hand failures to `report`.
  [[nodiscard]] client::APIClient& client() { return *m_client; }
  /// For these calls too: stopped once the pairing in force now is forgotten, and when the model goes.
  [[nodiscard]] std::stop_token pairingToken() const { return m_pairing.get_token(); }

 signals:
  void credentialsChanged();
  void sessionsChanged();
  void projectsChanged();
  void modelsChanged();
  void rateLimitChanged();
  void usageChanged();
  void archivedSessionsChanged();
  void archivedSessionIdsChanged();
  void archivedNextCursorChanged();
  void searchResultsChanged();
  void searchNextCursorChanged();
  void searchingChanged();
  void transcriptChanged(const std::string& sessionId);
  void pendingRequestsChanged(const std::string& sessionId);
  void queuedChanged(const std::string& sessionId);
  void sessionPreferencesChanged(const std::string& sessionId);
  void connectedChanged();
  void refreshedChanged();
  void tokenRefusedChanged();
  void lastContactChanged();
  void selectedSessionIdChanged();
  void selectedTranscriptItemIdChanged();
  void errorMessageChanged();

 private:
  // Each works until its token is stopped, and touches nothing of the model afterwards.
  QCoro::Task<> connectLoop(std::stop_token stop);
  QCoro::Task<> follow(std::unique_ptr<client::EventStream> stream, std::stop_token stop);
  QCoro::Task<> perform(live::EventAction action, std::stop_token stop);
  QCoro::Task<> refreshUntil(std::stop_token stop, bool includeRateLimit);
  QCoro::Task<> refreshRateLimitUntil(std::stop_token stop);
  QCoro::Task<> loadSessionUntil(std::stop_token stop, std::string sessionId);

  void readSaved();
  void store(const std::string& sessionId, live::SessionUpdate update);
  std::string showOptimistic(const std::string& sessionId, const std::string& text);
  void removeOptimistic(const std::string& sessionId, const std::string& itemId);
  void announce() const;
  void setArchive(std::vector<wire::ArchivedSession> sessions, std::optional<std::string> nextCursor);
  void setSearch(std::vector<wire::ConversationSearchResult> results, std::optional<std::string> nextCursor);
  void forgetPairing();

  /// Whether the answer is a good one; notes on the way what it says of the token.
  template <class T>
  bool accept(const client::Result<T>& answer) {
    noteToken(answer ? nullptr : &answer.error());
    return answer.has_value();
  }
  void noteToken(const client::ClientError* error);
  void touchContact();
  /// Stores and tells, if there is a difference.
  template <class T>
  void assign(T& field, std::type_identity_t<T> value, void (AppModel::*changed)()) {
    if (put(field, std::move(value))) emit(this->*changed)();
  }

  Surroundings m_surroundings;
  std::unique_ptr<client::APIClient> m_client;
  Fields m_fields;
  std::stop_source m_lifetime;    ///< stopped by the destructor alone
  std::stop_source m_pairing;     ///< and by `unpair`: what was asked under one pairing is not wanted under the next
  std::stop_source m_streamTask;  ///< and by `stop`
  std::stop_source m_path;        ///< and by `pathChanged`: for the stream in use alone
  bool m_started = false;
  bool m_listed = false;  ///< `sessions` came from the bridge, of this pairing
  std::int64_t m_lastSequence = 0;
  BySession<std::vector<wire::TranscriptItem>> m_optimisticMessages;
  live::LoadGenerations m_sessionLoadGeneration;
  std::string m_currentSearchQuery;
};

}  // namespace varnel::model
