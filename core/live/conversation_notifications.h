// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/wire/session.h"

/// Which conversations want to be looked at, and how to say so on a screen that anyone may see.
namespace varnel::live {

enum class NotificationKind { NeedsInput, Failed, Done };

/// The kinds that are announced; none of them is off.
struct NotificationChoice {
  bool needsInput = true;
  bool failed = true;
  bool done = true;
  bool operator==(const NotificationChoice&) const = default;
};

/// To be shown in its slot, in the place of what stands there. Neither text says anything of what the agent wrote.
struct PostNotification {
  std::string slot;
  NotificationKind kind = NotificationKind::Done;
  std::string title;
  std::string body;
  std::string link;  ///< opens the conversation
  bool operator==(const PostNotification&) const = default;
};
struct WithdrawNotification {
  std::string slot;
  bool operator==(const WithdrawNotification&) const = default;
};
using NotificationAction = std::variant<PostNotification, WithdrawNotification>;

/// What there is to know at the moment.
struct ConversationsNow {
  std::vector<wire::SessionSummary> sessions;
  /// The ids of the unresolved requests of those conversations that were loaded.
  std::map<std::string, std::set<std::string>, std::less<>> openRequests;
  std::optional<std::string> inView;  ///< the conversation that the user is looking at
};

/// Compares the conversations with what was announced of them, so that it does not matter which events were seen.
///
/// A conversation that needs input is announced once for its turn, and again for each further request; one that ended
/// is announced when it was seen to run before. What no longer holds, what is in view and what is switched off is
/// withdrawn. The memory is given back and forth as texts by conversation id, for keeping across runs; a text that
/// makes no sense is none.
class ConversationNotifications {
 public:
  using Memory = std::map<std::string, std::string, std::less<>>;

  explicit ConversationNotifications(const Memory& memory = {});

  std::vector<NotificationAction> update(const ConversationsNow& now, const NotificationChoice& choice);
  /// Withdraws all that stands and forgets everything.
  std::vector<NotificationAction> clear();
  [[nodiscard]] Memory memory() const;

 private:
  struct Known {
    wire::CodexTurnState state = wire::CodexTurnState::Working;
    std::string turnId;
    bool posted = false;
    std::set<std::string> requests;  ///< announced with this turn
  };

  static std::optional<Known> parse(std::string_view text);
  static std::string write(const Known& known);
  std::optional<NotificationAction> updateOne(const wire::SessionSummary& session, const ConversationsNow& now,
                                              const NotificationChoice& choice);

  std::map<std::string, Known, std::less<>> m_known;
};

}  // namespace varnel::live
