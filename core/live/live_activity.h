// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/wire/activity.h"
#include "core/wire/event.h"

/// How the live activity follows the events of the tracked turn.
namespace varnel::live {

/// How long content counts as current.
inline constexpr double kActivityFreshSeconds = 900;

enum class AttentionFeedback { Success, Warning, Error };

/// What is felt when a turn comes to that state, also when it was in it already.
std::optional<AttentionFeedback> attentionFeedback(wire::CodexTurnState state);

struct UpdateActivity {
  wire::CodexTurnAttributes::ContentState state;
  double staleDate = 0;  ///< seconds since 1970
  bool operator==(const UpdateActivity&) const = default;
};
/// With the content it shows, and off the screen at once.
struct EndActivity {
  bool operator==(const EndActivity&) const = default;
};
struct StartActivity {
  wire::CodexTurnAttributes attributes;
  wire::CodexTurnAttributes::ContentState state;
  double staleDate = 0;
  bool operator==(const StartActivity&) const = default;
};
struct GiveFeedback {
  AttentionFeedback signal = AttentionFeedback::Success;
  bool operator==(const GiveFeedback&) const = default;
};
using ActivityAction = std::variant<UpdateActivity, EndActivity, StartActivity, GiveFeedback>;

/// What a lock screen shows of an activity, each line of it kept to one.
struct ActivityText {
  std::string title;
  std::string body;
  bool operator==(const ActivityText&) const = default;
};
/// `updatedAt` is the state's moment as people read it.
ActivityText activityText(const wire::CodexTurnAttributes& attributes,
                          const wire::CodexTurnAttributes::ContentState& state, bool isOutdated,
                          std::string_view updatedAt);

/// What an event means for the current activity, to be performed in this order; most events mean nothing. `current`
/// are the attributes of the activity that is shown, `enabled` says whether another one may be started, `now` is in
/// seconds since 1970.
std::vector<ActivityAction> activityActions(const wire::LiveEvent& event,
                                            const std::optional<wire::CodexTurnAttributes>& current, bool enabled,
                                            double now);

}  // namespace varnel::live
