// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/live_activity_manager.h"

#include <algorithm>
#include <ranges>
#include <utility>
#include <variant>

namespace varnel::device {
namespace {

platform::HapticSignal hapticFor(live::AttentionFeedback feedback) {
  switch (feedback) {
    case live::AttentionFeedback::Success:
      return platform::HapticSignal::Success;
    case live::AttentionFeedback::Warning:
      return platform::HapticSignal::Warning;
    case live::AttentionFeedback::Error:
      return platform::HapticSignal::Error;
  }
  return platform::HapticSignal::Error;
}

/// The content that it shows, from now on for good.
platform::Activity::Content finalContent(const platform::Activity& activity) {
  return {.state = activity.content.state, .staleDate = std::nullopt};
}

}  // namespace

LiveActivityManager::LiveActivityManager(std::shared_ptr<platform::ActivityCentre> centre,
                                         std::shared_ptr<platform::Haptics> haptics, std::function<double()> now)
    : m_centre(std::move(centre)), m_haptics(std::move(haptics)), m_now(std::move(now)) {}

void LiveActivityManager::restore() {
  auto existing = m_centre->activities();
  // Of equal ids the last one, as a sort that is stable would leave it.
  const auto latest = std::ranges::max_element(existing | std::views::reverse, {}, &platform::Activity::id);
  m_current = existing.empty() ? std::nullopt : std::optional(std::move(*latest));
}

void LiveActivityManager::apply(const wire::LiveEvent& event) {
  const auto current = m_current ? std::optional(m_current->attributes) : std::nullopt;
  for (const auto& action : live::activityActions(event, current, m_centre->areActivitiesEnabled(), m_now())) {
    perform(action);
  }
}

void LiveActivityManager::clear() {
  for (const platform::Activity& activity : m_centre->activities()) m_centre->end(activity.id, finalContent(activity));
  m_current.reset();
}

void LiveActivityManager::perform(const live::ActivityAction& action) {
  if (const auto* update = std::get_if<live::UpdateActivity>(&action)) {
    m_current->content = {.state = update->state, .staleDate = update->staleDate};
    m_centre->update(m_current->id, m_current->content);
  } else if (std::holds_alternative<live::EndActivity>(action)) {
    m_centre->end(m_current->id, finalContent(*m_current));
    m_current.reset();
  } else if (const auto* start = std::get_if<live::StartActivity>(&action)) {
    m_current = m_centre->request(start->attributes, {.state = start->state, .staleDate = start->staleDate});
  } else if (const auto* feedback = std::get_if<live::GiveFeedback>(&action)) {
    m_haptics->notificationOccurred(hapticFor(feedback->signal));
  }
}

}  // namespace varnel::device
