// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <QUuid>

#include "app/client/api_client.h"
#include "app/model/app_model.h"
#include "core/base/text.h"

namespace varnel::model {
namespace {

std::string freshOptimisticId() {
  return "optimistic-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

}  // namespace

QCoro::Task<bool> AppModel::sendMessage(std::string sessionId, std::string text,
                                        wire::ConversationPreferences preferences,
                                        std::vector<wire::UploadedAttachment> attachments, bool asGoal) {
  const std::string trimmed(base::trimLines(text));
  if (trimmed.empty()) co_return false;
  const auto stop = m_pairing.get_token();
  const auto optimisticId = asGoal ? std::string() : showOptimistic(sessionId, trimmed);
  setSessionPreferences(sessionId, preferences);

  auto sending = asGoal ? m_client->startGoal(sessionId, trimmed, preferences, std::move(attachments), stop)
                        : m_client->sendMessage(sessionId, trimmed, preferences, std::move(attachments), stop);
  const auto sent = co_await sending;
  if (stop.stop_requested()) co_return sent.has_value();
  if (!accept(sent)) {
    if (!asGoal) removeOptimistic(sessionId, optimisticId);
    report(sent.error());
    co_return false;
  }
  if (asGoal) co_await loadSessionUntil(stop, sessionId);
  co_return true;
}

std::string AppModel::showOptimistic(const std::string& sessionId, const std::string& text) {
  wire::TranscriptItem item;
  item.id = freshOptimisticId();
  item.type = "userMessage";
  item.timestamp = m_surroundings.clock.now();
  item.role = "user";
  item.text = text;
  m_optimisticMessages[sessionId].push_back(item);
  m_fields.transcript[sessionId].push_back(item);
  emit transcriptChanged(sessionId);
  return item.id;
}

void AppModel::removeOptimistic(const std::string& sessionId, const std::string& itemId) {
  const auto isIt = [&](const wire::TranscriptItem& item) { return item.id == itemId; };
  std::erase_if(m_optimisticMessages[sessionId], isIt);
  if (std::erase_if(m_fields.transcript[sessionId], isIt) > 0) emit transcriptChanged(sessionId);
}

QCoro::Task<> AppModel::clearActivity() {
  const auto stop = m_pairing.get_token();
  const auto cleared = co_await m_client->track(std::nullopt, false, "clear", stop);
  if (stop.stop_requested()) co_return;
  accept(cleared);
  co_await m_surroundings.liveActivities.clear();
  if (stop.stop_requested()) co_return;
  co_await refreshUntil(stop, true);
}

}  // namespace varnel::model
