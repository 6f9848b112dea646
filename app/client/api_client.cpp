// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/api_client.h"

#include <QUuid>

#include "app/client/pipeline.h"
#include "core/live/operations.h"

namespace varnel::client {

namespace {

namespace operations = live::operations;

std::string freshKey() {
  return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

/// The one member of an answer that its caller wants.
template <class Answer, class Value>
Task<Result<Value>> memberOf(Task<Result<Answer>> task, Value Answer::* member) {
  auto answer = co_await task;
  if (!answer) co_return std::unexpected(answer.error());
  co_return Result<Value>(std::in_place, std::move((*answer).*member));
}

Task<Result<void>> dropAnswer(Task<Result<json::RawValue>> task) {
  auto answer = co_await task;
  if (!answer) co_return std::unexpected(answer.error());
  co_return Result<void>();
}

Task<Result<wire::PairingCredentials>> toCredentials(Task<Result<wire::ClaimResult>> task, base::Url baseURL) {
  auto claim = co_await task;
  if (!claim) co_return std::unexpected(claim.error());
  co_return wire::PairingCredentials{std::move(baseURL), std::move(claim->deviceId), std::move(claim->token)};
}

}  // namespace

APIClient::APIClient(std::optional<wire::PairingCredentials> credentials, ClientOptions options)
    : m_credentials(std::move(credentials)), m_options(options) {}

APIClient::~APIClient() {
  m_gone.request_stop();
}

void APIClient::setCredentials(std::optional<wire::PairingCredentials> credentials) {
  m_credentials = std::move(credentials);
}

CallContext APIClient::context() const {
  return CallContext{
      {m_options.timeout, m_options.answerLimit}, m_options.decodeHereLimit, m_gone.get_token(), m_contract};
}

template <class Answer>
Task<Result<Answer>> APIClient::run(const live::Call& operation, std::stop_token stop) const {
  return call<Answer>(context(), OutgoingRequest{live::buildRequest(operation, m_credentials, freshKey()), {}},
                      std::move(stop));
}

Task<Result<void>> APIClient::tell(const live::Call& operation, std::stop_token stop) const {
  return dropAnswer(run<json::RawValue>(operation, std::move(stop)));
}

// Whatever starts a coroutine takes its parameters by value here, whether or not it is one itself.
// NOLINTBEGIN(performance-unnecessary-value-param)
Task<Result<wire::PairingCredentials>> APIClient::claim(base::Url baseURL, std::string secret, std::string deviceName,
                                                        std::stop_token stop) {
  const live::Call operation = operations::claim(baseURL, std::move(secret), std::move(deviceName));
  return toCredentials(run<wire::ClaimResult>(operation, std::move(stop)), std::move(baseURL));
}

Task<Result<std::vector<wire::SessionSummary>>> APIClient::sessions(std::stop_token stop) {
  return memberOf(run<wire::SessionsEnvelope>(operations::sessions(), std::move(stop)),
                  &wire::SessionsEnvelope::sessions);
}

Task<Result<std::vector<wire::ProjectRecord>>> APIClient::projects(std::stop_token stop) {
  return memberOf(run<wire::ProjectsEnvelope>(operations::projects(), std::move(stop)),
                  &wire::ProjectsEnvelope::projects);
}

Task<Result<json::RawValue>> APIClient::models(std::stop_token stop) {
  return run<json::RawValue>(operations::models(), std::move(stop));
}

Task<Result<wire::RateLimitEnvelope>> APIClient::rateLimit(std::stop_token stop) {
  return run<wire::RateLimitEnvelope>(operations::rateLimit(), std::move(stop));
}

Task<Result<wire::UsageEnvelope>> APIClient::usage(std::optional<std::string> sessionId, std::stop_token stop) {
  return run<wire::UsageEnvelope>(operations::usage(sessionId), std::move(stop));
}

Task<Result<wire::ArchivedSessionsEnvelope>> APIClient::archivedSessions(std::optional<std::string> cursor,
                                                                         std::stop_token stop) {
  return run<wire::ArchivedSessionsEnvelope>(operations::archivedSessions(cursor), std::move(stop));
}

Task<Result<wire::SearchEnvelope>> APIClient::search(std::string query, std::optional<std::string> cursor,
                                                     std::stop_token stop) {
  return run<wire::SearchEnvelope>(operations::search(query, cursor), std::move(stop));
}

Task<Result<wire::SessionDetail>> APIClient::session(std::string sessionId, std::stop_token stop) {
  return run<wire::SessionDetail>(operations::session(sessionId), std::move(stop));
}

Task<Result<void>> APIClient::interrupt(std::string sessionId, std::stop_token stop) {
  return tell(operations::interrupt(sessionId), std::move(stop));
}

Task<Result<void>> APIClient::rename(std::string sessionId, std::string name, std::stop_token stop) {
  return tell(operations::rename(sessionId, std::move(name)), std::move(stop));
}

Task<Result<void>> APIClient::archive(std::string sessionId, bool unarchive, std::stop_token stop) {
  return tell(operations::archive(sessionId, unarchive), std::move(stop));
}

Task<Result<void>> APIClient::sendMessage(std::string sessionId, std::string text,
                                          wire::ConversationPreferences preferences,
                                          std::vector<wire::UploadedAttachment> attachments, std::stop_token stop) {
  return tell(operations::sendMessage(sessionId, std::move(text), preferences, std::move(attachments)),
              std::move(stop));
}

Task<Result<void>> APIClient::startGoal(std::string sessionId, std::string objective,
                                        wire::ConversationPreferences preferences,
                                        std::vector<wire::UploadedAttachment> attachments, std::stop_token stop) {
  return tell(operations::startGoal(sessionId, std::move(objective), preferences, std::move(attachments)),
              std::move(stop));
}

Task<Result<void>> APIClient::queueMessage(std::string sessionId, std::string text,
                                           wire::ConversationPreferences preferences,
                                           std::vector<wire::UploadedAttachment> attachments, std::stop_token stop) {
  return tell(operations::queueMessage(sessionId, std::move(text), preferences, std::move(attachments)),
              std::move(stop));
}

Task<Result<wire::QueueEnvelope>> APIClient::unqueue(std::string sessionId, std::optional<std::string> messageId,
                                                     std::stop_token stop) {
  return run<wire::QueueEnvelope>(operations::unqueue(sessionId, messageId), std::move(stop));
}

Task<Result<wire::UploadedAttachment>> APIClient::upload(std::string sessionId, QByteArray data, std::string mimeType,
                                                         std::string fileName, std::stop_token stop) {
  OutgoingRequest outgoing{live::buildUpload(sessionId, mimeType, fileName, m_credentials, freshKey()), std::move(data),
                           "Upload failed"};
  return call<wire::UploadedAttachment>(context(), std::move(outgoing), std::move(stop));
}

Task<Result<void>> APIClient::updateSettings(std::string sessionId, wire::ConversationPreferences preferences,
                                             std::stop_token stop) {
  return tell(operations::updateSettings(sessionId, preferences), std::move(stop));
}

Task<Result<std::string>> APIClient::createSession(wire::NewSessionBody session, std::stop_token stop) {
  return memberOf(run<wire::NewSessionResult>(operations::createSession(session), std::move(stop)),
                  &wire::NewSessionResult::threadId);
}

Task<Result<void>> APIClient::resolve(std::string requestId, json::JSONValue result, std::stop_token stop) {
  return tell(operations::resolve(requestId, std::move(result)), std::move(stop));
}

Task<Result<void>> APIClient::track(std::optional<std::string> sessionId, bool pin, std::optional<std::string> action,
                                    std::stop_token stop) {
  return tell(operations::track(std::move(sessionId), pin, std::move(action)), std::move(stop));
}
// NOLINTEND(performance-unnecessary-value-param)

Result<std::unique_ptr<EventStream>> APIClient::eventStream(std::int64_t after) const {
  auto address = live::buildStreamAddress(after, m_credentials);
  if (!address) return std::unexpected(toClientError(std::move(address).error()));
  EventStream::Options options;
  options.timeout = m_options.timeout;
  return std::make_unique<EventStream>(*std::move(address), options);
}

}  // namespace varnel::client
