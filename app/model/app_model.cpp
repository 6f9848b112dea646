// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/model/app_model.h"

#include <algorithm>

#include "app/client/api_client.h"

namespace varnel::model {
namespace {

template <class Value>
const Value& entryOf(const BySession<Value>& map, std::string_view sessionId) {
  static const Value kEmpty{};
  const auto entry = map.find(sessionId);
  return entry == map.end() ? kEmpty : entry->second;
}

constexpr int kUnauthorized = 401;
constexpr qsizetype kLongestReport = 2'000;

bool refusesToken(const client::ClientError& error) {
  const auto* answer = std::get_if<client::APIError>(&error);
  return answer != nullptr && answer->kind == client::APIError::Kind::Server && answer->status == kUnauthorized;
}

}  // namespace

AppModel::AppModel(Surroundings surroundings, QObject* parent)
    : QObject(parent), m_surroundings(std::move(surroundings)), m_credentials(m_surroundings.credentialStore.load()) {
  m_client = std::make_unique<client::APIClient>(m_credentials);
}

AppModel::~AppModel() {
  m_streamTask.request_stop();
  m_pairing.request_stop();
  m_lifetime.request_stop();
}

const wire::SessionSummary* AppModel::session(std::string_view id) const {
  const auto found = std::ranges::find(m_sessions, id, &wire::SessionSummary::id);
  return found == m_sessions.end() ? nullptr : &*found;
}

const std::vector<wire::TranscriptItem>& AppModel::transcript(std::string_view sessionId) const {
  return entryOf(m_transcript, sessionId);
}

const std::vector<wire::PendingRequest>& AppModel::pendingRequests(std::string_view sessionId) const {
  return entryOf(m_pendingRequests, sessionId);
}

std::optional<wire::ConversationPreferences> AppModel::preferences(std::string_view sessionId) const {
  const auto entry = m_sessionPreferences.find(sessionId);
  return entry == m_sessionPreferences.end() ? std::nullopt : std::optional(entry->second);
}

void AppModel::start() {
  if (!m_credentials || m_started) return;
  m_started = true;
  m_streamTask = std::stop_source();
  connectLoop(m_streamTask.get_token());
  refresh(true);
}

void AppModel::stop() {
  m_started = false;
  m_streamTask.request_stop();
  setConnected(false);
}

void AppModel::report(const client::ClientError& error) {
  if (client::isCancelled(error)) return;
  noteToken(&error);
  report(QString::fromStdString(client::userText(error)));
}

void AppModel::report(const QString& text) {
  const bool cut = text.size() > kLongestReport;
  const QString shown = cut ? text.left(kLongestReport - 1) + QChar(u'…') : text;
  assign(m_errorMessage, std::optional(shown), &AppModel::errorMessageChanged);
}

void AppModel::clearErrorMessage() {
  assign(m_errorMessage, std::optional<QString>(), &AppModel::errorMessageChanged);
}

void AppModel::selectSession(std::optional<std::string> sessionId) {
  assign(m_selectedSessionId, std::move(sessionId), &AppModel::selectedSessionIdChanged);
}

void AppModel::noteToken(const client::ClientError* error) {
  if (!error) {
    setTokenRefused(false);
  } else if (refusesToken(*error)) {
    setTokenRefused(true);
  }
}

void AppModel::touchContact() {
  assign(m_lastContact, std::optional(m_surroundings.clock.now()), &AppModel::lastContactChanged);
}

void AppModel::setConnected(bool connected) {
  assign(m_connected, connected, &AppModel::connectedChanged);
}

void AppModel::setRefreshed(bool refreshed) {
  assign(m_refreshed, refreshed, &AppModel::refreshedChanged);
}

void AppModel::setTokenRefused(bool refused) {
  assign(m_tokenRefused, refused, &AppModel::tokenRefusedChanged);
}

}  // namespace varnel::model
