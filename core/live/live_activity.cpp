// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/live_activity.h"

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "core/json/enum_names.h"
#include "core/live/notification_text.h"

namespace varnel::live {
namespace {

using json::JSONValue;
using ContentState = wire::CodexTurnAttributes::ContentState;

const JSONValue* member(const JSONValue::Object& object, std::string_view name) {
  const auto found = object.find(name);
  return found == object.end() ? nullptr : &found->second;
}

const std::string* text(const JSONValue::Object& object, std::string_view name) {
  const JSONValue* value = member(object, name);
  return value == nullptr ? nullptr : value->string();
}

const double* number(const JSONValue::Object& object, std::string_view name) {
  const JSONValue* value = member(object, name);
  return value == nullptr ? nullptr : value->number();
}

/// Without the fraction; nothing when it does not fit.
std::optional<std::int64_t> wholePart(double value) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (value >= -kLimit && value < kLimit) return static_cast<std::int64_t>(value);
  return std::nullopt;
}

std::optional<ContentState> contentOf(const JSONValue::Object& payload, std::int64_t eventSequence, double now) {
  const JSONValue* value = member(payload, "content");
  const JSONValue::Object* content = value == nullptr ? nullptr : value->object();
  if (content == nullptr) return std::nullopt;
  const std::string* stateName = text(*content, "state");
  const std::string* message = text(*content, "message");
  const auto state = stateName == nullptr ? std::nullopt : json::fromName<wire::CodexTurnState>(*stateName);
  if (!state || message == nullptr) return std::nullopt;

  const double* updatedAt = number(*content, "updatedAt");
  const double* sequence = number(*content, "sequence");
  const auto whole = sequence == nullptr ? std::nullopt : wholePart(*sequence);
  return ContentState{.state = *state,
                      .message = *message,
                      .updatedAt = updatedAt == nullptr ? now : *updatedAt,
                      .sequence = whole.value_or(eventSequence)};
}

std::string_view labelOf(wire::CodexTurnState state) {
  switch (state) {
    case wire::CodexTurnState::Working:
      return "Working";
    case wire::CodexTurnState::NeedsInput:
      return "Needs input";
    case wire::CodexTurnState::Done:
      return "Done";
    case wire::CodexTurnState::Failed:
      return "Failed";
    case wire::CodexTurnState::Interrupted:
      return "Interrupted";
    case wire::CodexTurnState::Stale:
      return "Stale";
  }
  return {};
}

struct Turn {
  wire::CodexTurnAttributes attributes;
  ContentState state;
};

/// The tracked turn that an event tells of; nothing unless it is told in full.
std::optional<Turn> trackedTurn(const wire::LiveEvent& event, double now) {
  if (event.type != "activity.updated") return std::nullopt;
  const JSONValue::Object payload = event.payload.value();
  const JSONValue* tracked = member(payload, "tracked");
  const bool* isTracked = tracked == nullptr ? nullptr : tracked->boolean();
  if (isTracked == nullptr || !*isTracked || !event.sessionId || !event.turnId) return std::nullopt;
  const std::string* project = text(payload, "project");
  if (project == nullptr) return std::nullopt;
  auto state = contentOf(payload, event.sequence, now);
  if (!state) return std::nullopt;
  return Turn{.attributes = {.sessionId = *event.sessionId, .turnId = *event.turnId, .project = *project},
              .state = *std::move(state)};
}

}  // namespace

std::optional<AttentionFeedback> attentionFeedback(wire::CodexTurnState state) {
  switch (state) {
    case wire::CodexTurnState::NeedsInput:
      return AttentionFeedback::Warning;
    case wire::CodexTurnState::Done:
      return AttentionFeedback::Success;
    case wire::CodexTurnState::Failed:
      return AttentionFeedback::Error;
    case wire::CodexTurnState::Working:
    case wire::CodexTurnState::Interrupted:
    case wire::CodexTurnState::Stale:
      break;
  }
  return std::nullopt;
}

ActivityText activityText(const wire::CodexTurnAttributes& attributes, const ContentState& state, bool isOutdated,
                          std::string_view updatedAt) {
  const std::string message = oneLine(state.message);
  std::string body = message.empty() ? "" : message + "\n";
  body.append("Updated ").append(updatedAt).append(isOutdated ? ", no news since" : "");
  return {.title = oneLine(attributes.project) + ": " + std::string(labelOf(state.state)), .body = std::move(body)};
}

std::vector<ActivityAction> activityActions(const wire::LiveEvent& event,
                                            const std::optional<wire::CodexTurnAttributes>& current, bool enabled,
                                            double now) {
  auto turn = trackedTurn(event, now);
  if (!turn) return {};
  const double staleDate = now + kActivityFreshSeconds;
  const auto feedback = attentionFeedback(turn->state.state);
  const bool isCurrent =
      current && current->sessionId == turn->attributes.sessionId && current->turnId == turn->attributes.turnId;

  std::vector<ActivityAction> actions;
  if (isCurrent) {
    actions.emplace_back(UpdateActivity{.state = std::move(turn->state), .staleDate = staleDate});
  } else {
    if (current) actions.emplace_back(EndActivity{});
    if (!enabled) return actions;
    actions.emplace_back(StartActivity{
        .attributes = std::move(turn->attributes), .state = std::move(turn->state), .staleDate = staleDate});
  }
  if (feedback) actions.emplace_back(GiveFeedback{*feedback});
  return actions;
}

}  // namespace varnel::live
