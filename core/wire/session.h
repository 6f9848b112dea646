// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/json/enum_names.h"

/// The conversations of the agent as the bridge lists them.
namespace varnel::wire {

enum class CodexTurnState { Working, NeedsInput, Done, Failed, Interrupted, Stale };

enum class CodexCollaborationMode { Default, Plan };

/// Settings of a conversation's turns. An absent `serviceTier` is the default tier.
struct ConversationPreferences {
  CodexCollaborationMode mode = CodexCollaborationMode::Default;
  std::string model;            ///< the `id` of a `ModelOption`
  std::string reasoningEffort;  ///< one of that model's `efforts`
  std::optional<std::string> serviceTier;
};
bool operator==(const ConversationPreferences&, const ConversationPreferences&);

/// What a device keeps of its user's choices: an object of the conversations' ids.
using PreferencesBySession = std::map<std::string, ConversationPreferences, std::less<>>;

struct ConversationPlanStep {
  std::string step;
  std::string status;  ///< the agent's word, passed on as it came

  [[nodiscard]] std::string identity() const { return status + "-" + step; }
};
bool operator==(const ConversationPlanStep&, const ConversationPlanStep&);

struct ConversationPlan {
  std::optional<std::string> turnId;
  std::optional<std::string> explanation;
  std::vector<ConversationPlanStep> steps;
  bool completed = false;
  double updatedAt = 0;  ///< seconds since 1970, UTC
};
bool operator==(const ConversationPlan&, const ConversationPlan&);

struct ConversationTokenUsage {
  std::int64_t contextTokens = 0;
  std::int64_t contextWindow = 0;
  std::optional<std::int64_t> inputTokens;
  std::optional<std::int64_t> outputTokens;
  std::optional<std::int64_t> reasoningTokens;
};
bool operator==(const ConversationTokenUsage&, const ConversationTokenUsage&);

struct SessionSummary {
  std::string id;
  std::optional<std::string> name;
  std::optional<std::string> cwd;
  std::string project;
  bool active = false;
  CodexTurnState state = CodexTurnState::Done;
  std::optional<std::string> currentTurnId;
  std::string latestCommentary;
  double updatedAt = 0;  ///< seconds since 1970, UTC
  bool pinned = false;
  std::optional<bool> tracked;
  std::optional<ConversationTokenUsage> tokenUsage;
  std::optional<ConversationPreferences> turnPreferences;
  std::optional<ConversationPlan> plan;

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const SessionSummary&, const SessionSummary&);

struct SessionsEnvelope {
  std::vector<SessionSummary> sessions;
};
bool operator==(const SessionsEnvelope&, const SessionsEnvelope&);

}  // namespace varnel::wire

template <>
inline constexpr auto varnel::json::kEnumNames<varnel::wire::CodexTurnState> =
    std::to_array<std::pair<varnel::wire::CodexTurnState, std::string_view>>({
        {varnel::wire::CodexTurnState::Working, "working"},
        {varnel::wire::CodexTurnState::NeedsInput, "needsInput"},
        {varnel::wire::CodexTurnState::Done, "done"},
        {varnel::wire::CodexTurnState::Failed, "failed"},
        {varnel::wire::CodexTurnState::Interrupted, "interrupted"},
        {varnel::wire::CodexTurnState::Stale, "stale"},
    });

template <>
inline constexpr auto varnel::json::kEnumNames<varnel::wire::CodexCollaborationMode> =
    std::to_array<std::pair<varnel::wire::CodexCollaborationMode, std::string_view>>({
        {varnel::wire::CodexCollaborationMode::Default, "default"},
        {varnel::wire::CodexCollaborationMode::Plan, "plan"},
    });
