// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "app/client/client_error.h"
#include "app/client/event_stream.h"
#include "core/base/url.h"
#include "core/json/raw_value.h"
#include "core/json/value.h"
#include "core/live/request.h"
#include "core/wire/bodies.h"
#include "core/wire/catalogue.h"
#include "core/wire/pairing.h"
#include "core/wire/queue.h"
#include "core/wire/search.h"
#include "core/wire/session.h"
#include "core/wire/session_detail.h"
#include "core/wire/usage.h"

namespace varnel::client {

struct CallContext;

/// Limits of every request; tests make them small.
struct ClientOptions {
  /// How long a request may go without a byte in either direction, and the upgrade of a stream without an answer.
  std::chrono::milliseconds timeout = std::chrono::seconds(live::kRequestTimeoutSeconds);
  /// The largest answer in bytes; a larger one is cut and fails.
  std::int64_t answerLimit = std::int64_t{512} << 20;
  /// Answers above this many bytes are decoded on a worker thread.
  std::int64_t decodeHereLimit = std::int64_t{256} << 10;
};

/// The only way to talk to the bridge: one coroutine an operation, under the operation's name.
///
/// Main thread only. Answers arrive there too, from the event loop; only a call that cannot be sent (not paired, not a
/// valid request) has failed when it returns. Owned by the application model. Credentials are read when a call starts,
/// so `setCredentials` counts from the next call on. Nothing is retried: a request reaches the wire at most once. No
/// redirect is followed: a 3xx is a failure like any other status that is not 2xx. Proxies, cookies and caches are not
/// used.
///
/// A stopped token ends a call at its next turn of the event loop with `Cancelled`; so does destroying the client,
/// which running calls survive. A token must be stopped on the main thread.
class APIClient {
 public:
  explicit APIClient(std::optional<wire::PairingCredentials> credentials, ClientOptions options = {});
  ~APIClient();
  APIClient(const APIClient&) = delete;
  APIClient& operator=(const APIClient&) = delete;

  /// The version of the contract that the bridge named in its last answer; empty while it named none.
  [[nodiscard]] const std::string& bridgeContract() const { return *m_contract; }

  /// Nothing after unpairing. Calls that are under way keep what they started with.
  void setCredentials(std::optional<wire::PairingCredentials> credentials);

  /// Talks to `baseURL`, paired or not, and sends no token. Does not change the client's own credentials.
  Task<Result<wire::PairingCredentials>> claim(base::Url baseURL, std::string secret, std::string deviceName,
                                               std::stop_token stop = {});

  Task<Result<std::vector<wire::SessionSummary>>> sessions(std::stop_token stop = {});
  Task<Result<std::vector<wire::ProjectRecord>>> projects(std::stop_token stop = {});
  /// The catalogue as it came; `value()` unfolds it.
  Task<Result<json::RawValue>> models(std::stop_token stop = {});
  Task<Result<wire::RateLimitEnvelope>> rateLimit(std::stop_token stop = {});
  /// Of one conversation too when an id is given.
  Task<Result<wire::UsageEnvelope>> usage(std::optional<std::string> sessionId, std::stop_token stop = {});
  Task<Result<wire::ArchivedSessionsEnvelope>> archivedSessions(std::optional<std::string> cursor,
                                                                std::stop_token stop = {});
  Task<Result<wire::SearchEnvelope>> search(std::string query, std::optional<std::string> cursor,
                                            std::stop_token stop = {});
  /// Fails only when the whole answer is not JSON; each member carries its own verdict.
  Task<Result<wire::SessionDetail>> session(std::string sessionId, std::stop_token stop = {});

  Task<Result<void>> interrupt(std::string sessionId, std::stop_token stop = {});
  Task<Result<void>> rename(std::string sessionId, std::string name, std::stop_token stop = {});
  Task<Result<void>> archive(std::string sessionId, bool unarchive, std::stop_token stop = {});
  Task<Result<void>> sendMessage(std::string sessionId, std::string text, wire::ConversationPreferences preferences,
                                 std::vector<wire::UploadedAttachment> attachments, std::stop_token stop = {});
  Task<Result<void>> startGoal(std::string sessionId, std::string objective, wire::ConversationPreferences preferences,
                               std::vector<wire::UploadedAttachment> attachments, std::stop_token stop = {});
  /// For the end of the running turn.
  Task<Result<void>> queueMessage(std::string sessionId, std::string text, wire::ConversationPreferences preferences,
                                  std::vector<wire::UploadedAttachment> attachments, std::stop_token stop = {});
  /// What was taken back: one message, or all without an id.
  Task<Result<wire::QueueEnvelope>> unqueue(std::string sessionId, std::optional<std::string> messageId,
                                            std::stop_token stop = {});
  Task<Result<wire::UploadedAttachment>> upload(std::string sessionId, QByteArray data, std::string mimeType,
                                                std::string fileName, std::stop_token stop = {});
  Task<Result<void>> updateSettings(std::string sessionId, wire::ConversationPreferences preferences,
                                    std::stop_token stop = {});
  /// The id of the new conversation.
  Task<Result<std::string>> createSession(wire::NewSessionBody session, std::stop_token stop = {});
  Task<Result<void>> resolve(std::string requestId, json::JSONValue result, std::stop_token stop = {});
  Task<Result<void>> track(std::optional<std::string> sessionId, bool pin, std::optional<std::string> action,
                           std::stop_token stop = {});

  /// The stream of events after a sequence number (0 before the first), not opened yet. Fails at once with NotPaired
  /// or a `RequestError`; never null.
  [[nodiscard]] Result<std::unique_ptr<EventStream>> eventStream(std::int64_t after) const;

 private:
  [[nodiscard]] CallContext context() const;
  template <class Answer>
  Task<Result<Answer>> run(const live::Call& operation, std::stop_token stop) const;
  [[nodiscard]] Task<Result<void>> tell(const live::Call& operation, std::stop_token stop) const;

  std::optional<wire::PairingCredentials> m_credentials;
  ClientOptions m_options;
  std::stop_source m_gone;
  std::shared_ptr<std::string> m_contract = std::make_shared<std::string>();
};

}  // namespace varnel::client
