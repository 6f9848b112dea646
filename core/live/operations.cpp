// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/operations.h"

#include "core/base/percent_encoding.h"
#include "core/json/enum_names.h"
#include "core/wire/codec.h"

namespace varnel::live::operations {

namespace {

using base::percentEncode;
using base::UrlSet;

Call get(std::string path) {
  return {.method = "GET", .path = std::move(path)};
}

template <class Body>
Call post(std::string_view path, const Body& body) {
  return {.method = "POST", .path = std::string(path), .body = wire::encode(body), .idempotent = true};
}

std::string inSession(std::string_view id, std::string_view operation) {
  return "/v1/sessions/" + std::string(id) + "/" + std::string(operation);
}

std::string withItem(std::string path, std::string_view name, const std::optional<std::string>& value, UrlSet set) {
  if (value) {
    path += path.contains('?') ? '&' : '?';
    path.append(name).append(1, '=').append(percentEncode(*value, set));
  }
  return path;
}

/// What every turn's body says of its preferences; an absent tier is the default one.
template <class Body>
Body withPreferences(Body body, const wire::ConversationPreferences& preferences) {
  body.mode = json::nameOf(preferences.mode);
  body.model = preferences.model;
  body.reasoningEffort = preferences.reasoningEffort;
  body.serviceTier = preferences.serviceTier.value_or("default");
  return body;
}

}  // namespace

Call claim(const base::Url& baseURL, std::string secret, std::string deviceName) {
  Call call = post("/v1/pair/claim", wire::ClaimBody{.secret = std::move(secret), .deviceName = std::move(deviceName)});
  call.authenticated = call.idempotent = false;
  call.baseURL = baseURL;
  return call;
}

Call sessions() {
  return get("/v1/sessions");
}
Call projects() {
  return get("/v1/projects");
}
Call models() {
  return get("/v1/models");
}
Call rateLimit() {
  return get("/v1/rate-limit");
}

Call usage(const std::optional<std::string>& sessionId) {
  return get(withItem("/v1/usage", "sessionId", sessionId, UrlSet::Query));
}

Call archivedSessions(const std::optional<std::string>& cursor) {
  return get(withItem("/v1/sessions/archived", "cursor", cursor, UrlSet::Query));
}

Call search(std::string_view query, const std::optional<std::string>& cursor) {
  // One value among several: whatever could end it is encoded.
  const std::string path = withItem("/v1/search", "q", std::string(query), UrlSet::Unreserved);
  return get(withItem(path, "cursor", cursor, UrlSet::Unreserved));
}

Call interrupt(std::string_view sessionId) {
  return post(inSession(sessionId, "interrupt"), wire::EmptyBody{});
}

Call rename(std::string_view sessionId, std::string name) {
  return post(inSession(sessionId, "name"), wire::RenameBody{.name = std::move(name)});
}

Call archive(std::string_view sessionId, bool unarchive) {
  return post(inSession(sessionId, unarchive ? "unarchive" : "archive"), wire::EmptyBody{});
}

Call session(std::string_view sessionId) {
  return get("/v1/sessions/" + percentEncode(sessionId, UrlSet::Path));
}

Call sendMessage(std::string_view sessionId, std::string text, const wire::ConversationPreferences& preferences,
                 std::vector<wire::UploadedAttachment> attachments) {
  wire::MessageBody body = withPreferences(wire::MessageBody{}, preferences);
  body.text = std::move(text);
  body.attachments = std::move(attachments);
  return post(inSession(sessionId, "messages"), body);
}

Call queueMessage(std::string_view sessionId, std::string text, const wire::ConversationPreferences& preferences,
                  std::vector<wire::UploadedAttachment> attachments) {
  Call call = sendMessage(sessionId, std::move(text), preferences, std::move(attachments));
  call.path = inSession(sessionId, "queue");
  return call;
}

Call unqueue(std::string_view sessionId, const std::optional<std::string>& messageId) {
  return {.method = "DELETE", .path = withItem(inSession(sessionId, "queue"), "id", messageId, UrlSet::Unreserved)};
}

Call startGoal(std::string_view sessionId, std::string objective, const wire::ConversationPreferences& preferences,
               std::vector<wire::UploadedAttachment> attachments) {
  wire::GoalBody body = withPreferences(wire::GoalBody{}, preferences);
  body.objective = std::move(objective);
  body.attachments = std::move(attachments);
  return post(inSession(sessionId, "goal"), body);
}

Call updateSettings(std::string_view sessionId, const wire::ConversationPreferences& preferences) {
  return post(inSession(sessionId, "settings"), withPreferences(wire::SettingsBody{}, preferences));
}

Call createSession(const wire::NewSessionBody& body) {
  return post("/v1/sessions", body);
}

Call resolve(std::string_view requestId, json::JSONValue result) {
  return post("/v1/requests/" + percentEncode(requestId, UrlSet::Path) + "/resolve",
              wire::ResolveBody{.result = std::move(result)});
}

Call track(std::optional<std::string> sessionId, bool pin, std::optional<std::string> action) {
  return post("/v1/tracking",
              wire::TrackingBody{.sessionId = std::move(sessionId), .pin = pin, .action = std::move(action)});
}

}  // namespace varnel::live::operations
