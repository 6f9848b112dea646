// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "app/client/api_client.h"
#include "app/client/async.h"
#include "app/client/event_stream.h"
#include "app/model/app_model.h"
#include "core/live/reconnect.h"
#include "core/wire/codec.h"
#include "core/wire/event.h"

namespace varnel::model {

QCoro::Task<> AppModel::connectLoop(std::stop_token stop) {
  live::ReconnectPolicy policy;
  while (!stop.stop_requested() && m_fields.credentials) {
    auto end = live::StreamEnd::NotBuilt;
    if (auto stream = m_client->eventStream(m_lastSequence)) {
      end = live::StreamEnd::Broken;
      co_await follow(std::move(*stream), stop);
      if (stop.stop_requested()) co_return;
    }
    assign(m_fields.connected, false, &AppModel::connectedChanged);
    co_await m_surroundings.clock.sleep(policy.waitAfter(end), stop);
  }
}

QCoro::Task<> AppModel::follow(std::unique_ptr<client::EventStream> stream, std::stop_token stop) {
  m_path = std::stop_source();
  const client::EitherStop broken(stop, m_path.get_token());
  stream->open();
  const auto opened = co_await stream->opened(broken.token());
  if (stop.stop_requested() || !accept(opened)) co_return;
  assign(m_fields.connected, true, &AppModel::connectedChanged);
  while (!stop.stop_requested()) {
    const auto message = co_await stream->next(broken.token());
    if (stop.stop_requested() || !message) co_return;
    auto event = wire::decode<wire::LiveEvent>(message->bytes);
    if (!event) co_return;
    m_lastSequence = std::max(m_lastSequence, event->sequence);
    touchContact();
    for (auto& action : live::actionsFor(*std::move(event))) {
      co_await perform(std::move(action), stop);
      if (stop.stop_requested()) co_return;
    }
  }
}

QCoro::Task<> AppModel::perform(live::EventAction action, std::stop_token stop) {
  struct Performer {
    AppModel& model;
    std::stop_token stop;

    QCoro::Task<> operator()(live::ApplyToActivity& activity) const {
      return model.m_surroundings.liveActivities.apply(std::move(activity.event));
    }
    QCoro::Task<> operator()(const live::RefreshLists& lists) const {
      return model.refreshUntil(stop, lists.includeRateLimit);
    }
    QCoro::Task<> operator()(const live::RefreshRateLimit&) const { return model.refreshRateLimitUntil(stop); }
    QCoro::Task<> operator()(live::LoadSession& load) const {
      return model.loadSessionUntil(stop, std::move(load.sessionId));
    }
  };
  return std::visit(Performer{*this, std::move(stop)}, action);
}

}  // namespace varnel::model
