// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <tuple>

#include "app/client/api_client.h"
#include "app/client/async.h"
#include "app/model/app_model.h"
#include "core/live/catalogue.h"
#include "core/live/rate_limit.h"
#include "core/live/reset_windows.h"
#include "core/wire/codec.h"

namespace varnel::model {

QCoro::Task<> AppModel::refresh(bool includeRateLimit) {
  return refreshUntil(m_pairing.get_token(), includeRateLimit);
}

QCoro::Task<> AppModel::refreshRateLimit() {
  return refreshRateLimitUntil(m_pairing.get_token());
}

QCoro::Task<> AppModel::refreshUntil(std::stop_token stop, bool includeRateLimit) {
  if (!m_fields.credentials) co_return;
  if (includeRateLimit) refreshRateLimit();

  std::stop_source failed;
  const client::EitherStop either(stop, failed.get_token());
  auto sessionsTask = m_client->sessions(either.token());
  auto projectsTask = m_client->projects(either.token());
  auto modelsTask = m_client->models(either.token());

  bool good = true;
  const auto take = [&](auto& answer, auto keep) {
    good = good && accept(answer);
    if (good) {
      keep(*answer);
    } else {
      failed.request_stop();
    }
  };

  auto sessions = co_await sessionsTask;
  if (stop.stop_requested()) co_return;
  take(sessions, [this](auto& list) {
    m_listed = true;
    assign(m_fields.sessions, std::move(list), &AppModel::sessionsChanged);
    announce();
  });

  auto projects = co_await projectsTask;
  if (stop.stop_requested()) co_return;
  take(projects, [this](auto& list) { assign(m_fields.projects, std::move(list), &AppModel::projectsChanged); });

  auto models = co_await modelsTask;
  if (stop.stop_requested()) co_return;
  take(models,
       [this](auto& list) { assign(m_fields.models, live::parseModels(list.value()), &AppModel::modelsChanged); });

  if (good && !stop.stop_requested()) {
    assign(m_fields.connected, true, &AppModel::connectedChanged);
    touchContact();
  }
  if (!stop.stop_requested()) assign(m_fields.refreshed, true, &AppModel::refreshedChanged);
}

void AppModel::announce() const {
  if (!m_listed) return;
  live::ConversationsNow now{.sessions = m_fields.sessions};
  for (const auto& [sessionId, requests] : m_fields.pendingRequests) {
    auto& open = now.openRequests[sessionId];
    for (const auto& request : requests) {
      if (!request.resolved) open.insert(request.id);
    }
  }
  if (m_surroundings.inForeground()) now.inView = m_fields.selectedSessionId;
  m_surroundings.conversationNotifier.update(std::move(now));
}

QCoro::Task<> AppModel::refreshRateLimitUntil(std::stop_token stop) {
  auto usage = co_await m_client->usage(std::nullopt, stop);
  if (stop.stop_requested()) co_return;
  if (accept(usage)) {
    auto watched = live::windowsToWatch(*usage);
    const auto shown = live::shownWindow(*usage);
    if (const auto text = wire::encode(*usage)) {
      std::ignore = m_surroundings.defaults->set(kUsageCacheKey, platform::Data{*text});
    }
    const bool usageDiffers = put(m_fields.usage, *std::move(usage));
    const bool rateLimitDiffers = put(m_fields.rateLimit, shown);
    if (usageDiffers) emit usageChanged();
    if (rateLimitDiffers) emit rateLimitChanged();
    if (stop.stop_requested()) co_return;
    co_await m_surroundings.usageResetNotifier.schedule(std::move(watched));
    co_return;
  }
  auto fallback = co_await m_client->rateLimit(stop);
  if (stop.stop_requested() || !accept(fallback)) co_return;
  std::vector<wire::RateLimitWindow> watched;
  if (fallback->rateLimit) watched.push_back(*fallback->rateLimit);
  assign(m_fields.rateLimit, fallback->rateLimit, &AppModel::rateLimitChanged);
  if (stop.stop_requested()) co_return;
  co_await m_surroundings.usageResetNotifier.schedule(std::move(watched));
}

}  // namespace varnel::model
