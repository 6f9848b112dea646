// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/conversation_notifier.h"

#include <chrono>
#include <utility>
#include <variant>

namespace varnel::device {
namespace {

using namespace std::chrono_literals;
using live::NotificationKind;
using platform::Notification;

constexpr std::string_view kKey = "Varnel.AnnouncedConversations";
constexpr auto kSettling = 200ms;

Notification::Urgency urgencyOf(NotificationKind kind) {
  switch (kind) {
    case NotificationKind::NeedsInput:
      return Notification::Urgency::Critical;
    case NotificationKind::Failed:
      return Notification::Urgency::Normal;
    case NotificationKind::Done:
      return Notification::Urgency::Low;
  }
  return Notification::Urgency::Normal;
}

}  // namespace

ConversationNotifier::ConversationNotifier(platform::NotificationCentre& notifications, platform::DefaultsStore& store,
                                           QObject* parent)
    : QObject(parent),
      m_notifications(notifications),
      m_store(store),
      m_rules(store.get<platform::Dictionary>(kKey).value_or(platform::Dictionary())) {
  m_settling.setSingleShot(true);
  connect(&m_settling, &QTimer::timeout, this, &ConversationNotifier::decide);
}

void ConversationNotifier::update(live::ConversationsNow now) {
  m_now = std::move(now);
  if (!m_settling.isActive()) m_settling.start(kSettling);
}

void ConversationNotifier::clear() {
  m_settling.stop();
  perform(m_rules.clear());
  static_cast<void>(m_store.remove(kKey));  // what stays there is overlooked once the conversations are gone
}

void ConversationNotifier::decide() {
  const auto isOn = [this](std::string_view key) { return m_store.get<bool>(key).value_or(true); };
  const auto before = m_rules.memory();
  perform(m_rules.update(
      m_now,
      {.needsInput = isOn(kNotifyNeedsInputKey), .failed = isOn(kNotifyFailedKey), .done = isOn(kNotifyDoneKey)}));
  // On failure the next run may announce something again; there is no one to tell.
  if (auto memory = m_rules.memory(); memory != before) static_cast<void>(m_store.set(kKey, memory));
}

void ConversationNotifier::perform(const std::vector<live::NotificationAction>& actions) {
  for (const auto& action : actions) {
    if (const auto* post = std::get_if<live::PostNotification>(&action)) {
      m_notifications.post(post->slot, {.title = post->title,
                                        .body = post->body,
                                        .urgency = urgencyOf(post->kind),
                                        .sound = post->kind == NotificationKind::NeedsInput,
                                        .link = post->link});
    } else if (const auto* withdraw = std::get_if<live::WithdrawNotification>(&action)) {
      m_notifications.remove(withdraw->slot);
    }
  }
}

}  // namespace varnel::device
