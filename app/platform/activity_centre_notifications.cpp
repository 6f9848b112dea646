// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/activity_centre_notifications.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <utility>

#include "core/base/percent_encoding.h"
#include "core/json/text.h"
#include "core/live/live_activity.h"
#include "core/wire/codec.h"

namespace varnel::platform {
namespace {

using namespace std::chrono_literals;
using ContentState = wire::CodexTurnAttributes::ContentState;

constexpr std::string_view kKey = "Varnel.Activities";
constexpr auto kKeepDelay = 5s;
/// A timer does not count while the device sleeps, nor when the clock is set.
constexpr auto kLongestWait = 1min;

constexpr std::string_view kIdPrefix = "varnel-activity-";
constexpr std::size_t kIdDigits = 14;

std::uint64_t millisecondsOf(std::string_view id) {
  std::uint64_t milliseconds = 0;
  if (id.starts_with(kIdPrefix)) {
    std::from_chars(id.data() + kIdPrefix.size(), id.data() + id.size(), milliseconds);
  }
  return std::min(milliseconds, std::uint64_t{99'999'999'999'998});
}

std::string timeOfDay(double seconds) {
  const auto moment = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::clamp(seconds, 0.0, 1e11) * 1000));
  return QLocale().toString(moment.time(), QLocale::ShortFormat).toStdString();
}

// Three lines: the attributes, the state, and when it is outdated. JSON written here has no line ends.

std::optional<std::string> textOf(const Activity& activity) {
  const auto attributes = wire::encode(activity.attributes);
  const auto state = wire::encode(activity.content.state);
  const auto staleDate =
      activity.content.staleDate ? json::write(json::JSONValue(*activity.content.staleDate)) : std::string("null");
  if (!attributes || !state || !staleDate) return std::nullopt;
  return *attributes + "\n" + *state + "\n" + *staleDate;
}

std::optional<Activity> activityFrom(const std::string& id, std::string_view text) {
  const std::size_t first = text.find('\n');
  const std::size_t second = first == std::string_view::npos ? first : text.find('\n', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  auto attributes = wire::decode<wire::CodexTurnAttributes>(text.substr(0, first));
  auto state = wire::decode<ContentState>(text.substr(first + 1, second - first - 1));
  const auto staleDate = json::parse(text.substr(second + 1));
  if (!attributes || !state || !staleDate) return std::nullopt;
  const double* seconds = staleDate->number();
  return Activity{.id = id,
                  .attributes = *std::move(attributes),
                  .content = {.state = *std::move(state),
                              .staleDate = seconds == nullptr ? std::nullopt : std::optional(*seconds)}};
}

}  // namespace

NotificationActivityCentre::NotificationActivityCentre(NotificationCentre& notifications, DefaultsStore& store,
                                                       std::function<double()> now, QObject* parent)
    : QObject(parent), m_notifications(notifications), m_store(store), m_now(std::move(now)) {
  m_keep.setSingleShot(true);
  connect(&m_keep, &QTimer::timeout, this, &NotificationActivityCentre::keep);
  connect(&m_outdating, &QTimer::timeout, this, &NotificationActivityCentre::check);
  connect(&m_notifications, &NotificationCentre::dismissed, this, &NotificationActivityCentre::forget);
  load();
}

NotificationActivityCentre::~NotificationActivityCentre() {
  if (m_keep.isActive()) keep();
}

std::vector<Activity> NotificationActivityCentre::activities() const {
  std::vector<Activity> activities;
  activities.reserve(m_entries.size());
  for (const auto& [id, entry] : m_entries) activities.push_back(entry.activity);
  return activities;
}

bool NotificationActivityCentre::areActivitiesEnabled() const {
  const auto capabilities = m_notifications.capabilities();
  return capabilities && capabilities->body && m_store.get<bool>(kLiveActivitiesKey).value_or(true);
}

std::optional<Activity> NotificationActivityCentre::request(const wire::CodexTurnAttributes& attributes,
                                                            const Activity::Content& content) {
  if (!areActivitiesEnabled()) return std::nullopt;
  Activity activity{.id = freshId(), .attributes = attributes, .content = content};
  show(m_entries.insert_or_assign(activity.id, Entry{.activity = activity}).first->second);
  keep();
  return activity;
}

void NotificationActivityCentre::update(const std::string& id, const Activity::Content& content) {
  const auto found = m_entries.find(id);
  if (found == m_entries.end()) return;
  found->second.activity.content = content;
  show(found->second);
  if (!m_keep.isActive()) m_keep.start(kKeepDelay);
}

void NotificationActivityCentre::end(const std::string& id, const Activity::Content&) {
  m_notifications.remove(id);
  forget(id);
}

void NotificationActivityCentre::forget(const std::string& id) {
  if (m_entries.erase(id) > 0) keep();
}

void NotificationActivityCentre::check() {
  for (auto& [id, entry] : m_entries) {
    if (!entry.isOutdated && isOutdated(entry.activity)) show(entry);
  }
  if (std::ranges::all_of(m_entries, [](const auto& each) { return each.second.isOutdated; })) m_outdating.stop();
}

void NotificationActivityCentre::show(Entry& entry) {
  const auto& [attributes, content] = std::tie(entry.activity.attributes, entry.activity.content);
  entry.isOutdated = isOutdated(entry.activity);
  auto text = live::activityText(attributes, content.state, entry.isOutdated, timeOfDay(content.state.updatedAt));
  m_notifications.post(
      entry.activity.id,
      {.title = std::move(text.title),
       .body = std::move(text.body),
       .urgency = Notification::Urgency::Low,
       .resident = true,
       .link = "varnel://session/" + base::percentEncode(attributes.sessionId, base::UrlSet::Unreserved)});
  if (!entry.isOutdated && !m_outdating.isActive()) m_outdating.start(kLongestWait);
}

bool NotificationActivityCentre::isOutdated(const Activity& activity) const {
  return activity.content.staleDate && *activity.content.staleDate <= m_now();
}

/// Of fixed width, so that the later one is also the greater text, even when the clock was set back.
std::string NotificationActivityCentre::freshId() {
  auto milliseconds = static_cast<std::uint64_t>(std::clamp(m_now(), 0.0, 9e10) * 1000);
  if (!m_entries.empty()) milliseconds = std::max(milliseconds, millisecondsOf(m_entries.rbegin()->first) + 1);
  std::string digits = std::to_string(milliseconds);
  digits.insert(0, digits.size() < kIdDigits ? kIdDigits - digits.size() : 0, '0');
  return std::string(kIdPrefix) + digits;
}

void NotificationActivityCentre::load() {
  for (const auto& [id, text] : m_store.get<Dictionary>(kKey).value_or(Dictionary())) {
    if (auto activity = activityFrom(id, text)) m_entries.emplace(id, Entry{.activity = *std::move(activity)});
  }
  // What stood before this run is not shown again until it has something new, be it that it is outdated.
  if (!m_entries.empty()) m_outdating.start(kLongestWait);
}

void NotificationActivityCentre::keep() {
  m_keep.stop();
  Dictionary kept;
  for (const auto& [id, entry] : m_entries) {
    if (auto text = textOf(entry.activity)) kept.emplace(id, *std::move(text));
  }
  // On failure the next run does not find it; there is no one to tell.
  static_cast<void>(m_store.set(kKey, kept));
}

}  // namespace varnel::platform
