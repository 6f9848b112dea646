// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/handlers.h"

#include "core/wire/bodies.h"
#include "host/service/bridge.h"
#include "host/service/checked.h"

namespace varnel::http::handlers {

using service::Outcome;
using service::refuse;
using service::Task;
using Kind = service::Failure::Kind;

namespace {

template <class Body>
Outcome<Body> bodyOf(const Call& call) {
  auto body = wire::decode<Body>(call.body);
  if (!body) return refuse(Kind::Invalid, "The request is not understood: " + body.error().message());
  return std::move(*body);
}

Outcome<std::string> done(const Outcome<void>& outcome) {
  if (!outcome) return std::unexpected(outcome.error());
  return "{}";
}

}  // namespace

Task<std::string> claim(Call call) {
  const auto body = bodyOf<wire::ClaimBody>(call);
  if (!body) co_return std::unexpected(body.error());
  const auto claimed = call.bridge.pairing.claim(*body);
  if (!claimed) co_return std::unexpected(claimed.error());
  co_return service::checkedText("claim", *claimed);
}

Task<std::string> listSessions(Call call) {
  return call.bridge.conversations.list();
}

Task<std::string> createSession(Call call) {
  const auto body = bodyOf<wire::NewSessionBody>(call);
  if (!body) co_return std::unexpected(body.error());
  const auto created = co_await call.bridge.commands.createSession(*body, call.key);
  if (!created) co_return std::unexpected(created.error());
  co_return service::checkedText("new session", *created);
}

Task<std::string> listArchived(Call call) {
  return call.bridge.conversations.archived(call.target.value("cursor"));
}

Task<std::string> showSession(Call call) {
  return call.bridge.conversations.detail(call.ids[0]);
}

Task<std::string> sendMessage(Call call) {
  const auto body = bodyOf<wire::MessageBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.sendMessage(call.ids[0], *body, call.key));
}

Task<std::string> queueMessage(Call call) {
  const auto body = bodyOf<wire::MessageBody>(call);
  if (!body) co_return std::unexpected(body.error());
  const auto queued = co_await call.bridge.queue.add(call.ids[0], *body, call.key);
  if (!queued) co_return std::unexpected(queued.error());
  co_return service::checkedText("queued message", *queued);
}

Task<std::string> unqueue(Call call) {
  const auto removed = co_await call.bridge.queue.remove(call.ids[0], call.target.value("id"));
  if (!removed) co_return std::unexpected(removed.error());
  co_return service::checkedText("queue", *removed);
}

Task<std::string> startGoal(Call call) {
  const auto body = bodyOf<wire::GoalBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.startGoal(call.ids[0], *body, call.key));
}

Task<std::string> updateSettings(Call call) {
  const auto body = bodyOf<wire::SettingsBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.updateSettings(call.ids[0], *body));
}

Task<std::string> interrupt(Call call) {
  const auto body = bodyOf<wire::EmptyBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.interrupt(call.ids[0]));
}

Task<std::string> rename(Call call) {
  const auto body = bodyOf<wire::RenameBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.rename(call.ids[0], *body));
}

Task<std::string> archive(Call call) {
  const auto body = bodyOf<wire::EmptyBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.archive(call.ids[0]));
}

Task<std::string> unarchive(Call call) {
  const auto body = bodyOf<wire::EmptyBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.unarchive(call.ids[0]));
}

Task<std::string> listProjects(Call call) {
  return call.bridge.conversations.projects();
}

Task<std::string> listModels(Call call) {
  return call.bridge.conversations.models();
}

Task<std::string> showRateLimit(Call call) {
  return call.bridge.conversations.rateLimit();
}

Task<std::string> showUsage(Call call) {
  return call.bridge.conversations.usage(call.target.value("sessionId"));
}

Task<std::string> search(Call call) {
  return call.bridge.search.find(call.target.value("q").value_or(""), call.target.value("cursor"));
}

Task<std::string> resolve(Call call) {
  const auto body = bodyOf<wire::ResolveBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.resolve(call.ids[0], *body));
}

Task<std::string> track(Call call) {
  const auto body = bodyOf<wire::TrackingBody>(call);
  if (!body) co_return std::unexpected(body.error());
  co_return done(co_await call.bridge.commands.track(*body));
}

}  // namespace varnel::http::handlers
