// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/awaitable.hpp>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/json/value.h"
#include "core/wire/catalogue.h"
#include "core/wire/request.h"
#include "core/wire/search.h"
#include "core/wire/session.h"
#include "core/wire/transcript.h"
#include "core/wire/usage.h"

/// The agent behind the bridge: whoever holds conversations, works on turns and asks for approval.
namespace varnel::agent {

/// Why the agent did not do what it was asked.
struct AgentError {
  enum class Kind {
    NotFound,     ///< no such conversation, request or file
    Conflict,     ///< already answered, nothing running, archived
    Invalid,      ///< the agent would not take this value
    Unavailable,  ///< the agent cannot be reached now
  };
  Kind kind = Kind::Unavailable;
  std::string text;  ///< for people, as the bridge shows it
};

template <class T>
using Result = std::expected<T, AgentError>;
template <class T>
using Task = boost::asio::awaitable<Result<T>>;

/// Something changed; the phone is told and reads it again.
struct Change {
  enum class Kind {
    Item,      ///< an item of the transcript appeared or grew
    Turn,      ///< a turn began or ended, or the state word changed
    Plan,      ///< the plan moved
    Settings,  ///< preferences, token usage, name
    Request,   ///< a request was asked or answered
    List,      ///< a conversation appeared, or went to or came from the archive
    Usage,     ///< the account's usage or limits
    Lost,      ///< the agent was gone for a while: anything may have changed
  };
  Kind kind = Kind::Lost;
  std::optional<std::string> sessionId = std::nullopt;  ///< absent for Usage and Lost
  std::optional<std::string> turnId = std::nullopt;
};

/// One conversation in full. `pendingRequests` holds the open ones; pins and tracking are the bridge's and not set.
struct Conversation {
  wire::SessionSummary summary;
  std::vector<wire::TranscriptItem> items;
  std::vector<wire::PendingRequest> pendingRequests;
};

struct TurnInput {
  std::string text;
  wire::ConversationPreferences preferences;
  /// Files stored by the bridge, with their paths on the host.
  struct Attachment {
    wire::UploadedAttachment record;
    std::string path;
  };
  std::vector<Attachment> attachments;
  /// The sender's own id of this message, the same for a repeated attempt.
  std::string clientMessageId;
};

struct NewSession {
  std::string cwd;
  std::string sandbox;
  std::string approvalPolicy;
  TurnInput firstTurn;
};

/// All calls are made, and all changes reported, on the one thread that runs the bridge. A conversation's `project` is
/// its name when it has one, else the base name of its worktree.
class Agent {
 public:
  virtual ~Agent() = default;

  /// Begins to work and to report; `onChange` is kept and called until `stop`.
  virtual Task<void> start(std::function<void(const Change&)> onChange) = 0;
  /// Ends what runs, without waiting for the agent's turns.
  virtual void stop() = 0;

  /// Unarchived conversations, most recently changed first; answered from memory.
  virtual Task<std::vector<wire::SessionSummary>> sessions() = 0;
  /// Works for archived conversations too.
  virtual Task<Conversation> conversation(std::string sessionId) = 0;
  virtual Task<std::vector<wire::ArchivedSession>> archived() = 0;
  virtual Task<std::vector<wire::ProjectRecord>> projects() = 0;
  /// The catalogue as the phone reads it: `{"data": [{"id", "displayName", "supportedReasoningEfforts", ...}]}`.
  virtual Task<json::JSONValue> models() = 0;
  virtual Task<wire::RateLimitEnvelope> rateLimit() = 0;
  virtual Task<wire::UsageEnvelope> usage(std::optional<std::string> sessionId) = 0;

  /// The id of the new conversation.
  virtual Task<std::string> createSession(NewSession session) = 0;
  /// Steers the running turn or starts one.
  virtual Task<void> sendMessage(std::string sessionId, TurnInput input) = 0;
  virtual Task<void> startGoal(std::string sessionId, TurnInput input) = 0;
  virtual Task<void> updateSettings(std::string sessionId, wire::ConversationPreferences preferences) = 0;
  virtual Task<void> interrupt(std::string sessionId) = 0;
  virtual Task<void> rename(std::string sessionId, std::string name) = 0;
  virtual Task<void> archive(std::string sessionId) = 0;
  virtual Task<void> unarchive(std::string sessionId) = 0;
  /// Checks the result against what the request takes; Conflict when it was answered before.
  virtual Task<void> resolve(std::string requestId, json::JSONValue result) = 0;
};

}  // namespace varnel::agent
