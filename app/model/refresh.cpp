// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/api_client.h"
#include "app/client/async.h"
#include "app/model/app_model.h"
#include "core/live/catalogue.h"
#include "core/live/rate_limit.h"

namespace varnel::model {

QCoro::Task<> AppModel::refresh(bool includeRateLimit) {
  return refreshUntil(m_pairing.get_token(), includeRateLimit);
}

QCoro::Task<> AppModel::refreshRateLimit() {
  return refreshRateLimitUntil(m_pairing.get_token());
}

QCoro::Task<> AppModel::refreshUntil(std::stop_token stop, bool includeRateLimit) {
  if (!m_credentials) co_return;
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
  take(sessions, [this](auto& list) { assign(m_sessions, std::move(list), &AppModel::sessionsChanged); });

  auto projects = co_await projectsTask;
  if (stop.stop_requested()) co_return;
  take(projects, [this](auto& list) { assign(m_projects, std::move(list), &AppModel::projectsChanged); });

  auto models = co_await modelsTask;
  if (stop.stop_requested()) co_return;
  take(models, [this](auto& list) { assign(m_models, live::parseModels(list.value()), &AppModel::modelsChanged); });

  if (good && !stop.stop_requested()) {
    setConnected(true);
    touchContact();
  }
  if (!stop.stop_requested()) setRefreshed(true);
}

QCoro::Task<> AppModel::refreshRateLimitUntil(std::stop_token stop) {
  auto usage = co_await m_client->usage(std::nullopt, stop);
  if (stop.stop_requested()) co_return;
  if (accept(usage)) {
    const auto window = live::shownWindow(*usage);
    assign(m_usage, std::optional(std::move(*usage)), &AppModel::usageChanged);
    assign(m_rateLimit, window, &AppModel::rateLimitChanged);
    co_return;
  }
  auto fallback = co_await m_client->rateLimit(stop);
  if (stop.stop_requested() || !accept(fallback)) co_return;
  assign(m_rateLimit, fallback->rateLimit, &AppModel::rateLimitChanged);
}

}  // namespace varnel::model
