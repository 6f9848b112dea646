// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/json/value.h"
#include "core/wire/session.h"

/// What is known of one conversation, and what the agent's records say about it. Plain data, no I/O; times are passed
/// in as seconds since 1970.
namespace varnel::agent::codex {

using json::JSONValue;

struct LastTurn {
  std::string id;
  std::string status;    ///< the agent's word; empty while there is no turn
  bool hasEnded = true;  ///< false when its process died, or is another one
  std::string error;
};

/// What the agent does not tell (again), kept by the bridge.
struct Remembered {
  std::optional<std::string> sandbox;
  std::optional<std::string> approvalPolicy;
  std::optional<wire::ConversationPreferences> preferences;
  std::optional<wire::ConversationTokenUsage> tokenUsage;
  std::optional<wire::ConversationPlan> plan;
  LastTurn last;
  std::string commentary;
  double readAt = -1;  ///< the change of the conversation up to which `last` and `commentary` hold
};
std::string encodeMemory(const Remembered& memory);
/// What does not fit is forgotten.
Remembered decodeMemory(const std::string& text);

/// An item of the running turn, as the agent sent it last.
struct LiveItem {
  std::string turnId;
  JSONValue item;
  double at = 0;
};

struct Thread {
  std::string id;
  std::optional<std::string> name;
  std::optional<std::string> cwd;
  double updatedAt = 0;
  bool archived = false;
  bool hasStableIds = true;  ///< false for an older kind of history, whose ids differ live and stored
  bool begun = false;        ///< there is something to show: one that was only opened is not listed
  bool loaded = false;       ///< by the server that the bridge is connected to
  bool followed = false;     ///< its events come to the bridge
  bool active = false;
  bool broken = false;   ///< the last turn failed, as long as no other begins
  bool waiting = false;  ///< for the user, says the agent
  std::optional<std::string> turn;
  std::vector<LiveItem> live;
  Remembered memory;
};

void takeRecord(Thread& thread, const JSONValue& record);
void takeStatus(Thread& thread, const JSONValue& status);
/// A turn that is over, with the items that its summary has.
void takeLastTurn(Thread& thread, const JSONValue& turn);
/// From "thread/settings/updated".
void takeSettings(Thread& thread, const JSONValue& settings);
/// From the answer to "thread/start" and "thread/resume", which know no mode.
void takeStartSettings(Thread& thread, const JSONValue& answer);
void takeTokenUsage(Thread& thread, const JSONValue& usage);
void takePlan(Thread& thread, const JSONValue& params, double now);

/// Every state of the agent is one of the six.
wire::CodexTurnState stateOf(const Thread& thread, bool hasRequests);
/// Pins and tracking are left out.
wire::SessionSummary summaryOf(const Thread& thread, bool hasRequests);

}  // namespace varnel::agent::codex
