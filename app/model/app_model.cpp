// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/model/app_model.h"

#include <algorithm>

#include "app/client/api_client.h"
#include "core/live/link.h"

namespace varnel::model {
namespace {

template <class List>
const List& entryOf(const BySession<List>& map, std::string_view sessionId) {
  static const List kEmpty;
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
    : QObject(parent), m_surroundings(std::move(surroundings)) {
  m_fields.credentials = m_surroundings.credentialStore.load();
  m_client = std::make_unique<client::APIClient>(m_fields.credentials);
  readSaved();
  m_surroundings.liveActivities.restore();
  m_surroundings.attach(*this);
}

AppModel::~AppModel() {
  m_streamTask.request_stop();
  m_pairing.request_stop();
  m_lifetime.request_stop();
}

const wire::SessionSummary* AppModel::session(std::string_view id) const {
  const auto found = std::ranges::find(m_fields.sessions, id, &wire::SessionSummary::id);
  return found == m_fields.sessions.end() ? nullptr : &*found;
}

const std::vector<wire::TranscriptItem>& AppModel::transcript(std::string_view sessionId) const {
  return entryOf(m_fields.transcript, sessionId);
}

const std::vector<wire::QueuedMessage>* AppModel::queued(std::string_view sessionId) const {
  const auto entry = m_fields.queued.find(sessionId);
  return entry == m_fields.queued.end() ? nullptr : &entry->second;
}

const std::vector<wire::PendingRequest>& AppModel::pendingRequests(std::string_view sessionId) const {
  return entryOf(m_fields.pendingRequests, sessionId);
}

void AppModel::start() {
  announce();  // the application may have come to the foreground
  if (!m_fields.credentials || m_started) return;
  m_started = true;
  m_streamTask = std::stop_source();
  connectLoop(m_streamTask.get_token());
  refresh(true);
}

void AppModel::stop() {
  m_started = false;
  m_streamTask.request_stop();
  assign(m_fields.connected, false, &AppModel::connectedChanged);
}

void AppModel::pathChanged() {
  m_path.request_stop();
}

void AppModel::report(const client::ClientError& error) {
  if (client::isCancelled(error)) return;
  noteToken(&error);
  report(QString::fromStdString(client::userText(error)));
}

void AppModel::report(const QString& text) {
  const bool cut = text.size() > kLongestReport;
  const QString shown = cut ? text.left(kLongestReport - 1) + QChar(u'…') : text;
  assign(m_fields.errorMessage, std::optional(shown), &AppModel::errorMessageChanged);
}

void AppModel::clearErrorMessage() {
  assign(m_fields.errorMessage, std::optional<QString>(), &AppModel::errorMessageChanged);
}

void AppModel::selectSession(std::optional<std::string> sessionId) {
  assign(m_fields.selectedSessionId, std::move(sessionId), &AppModel::selectedSessionIdChanged);
  announce();
}

void AppModel::noteToken(const client::ClientError* error) {
  if (!error) {
    assign(m_fields.tokenRefused, false, &AppModel::tokenRefusedChanged);
  } else if (refusesToken(*error)) {
    assign(m_fields.tokenRefused, true, &AppModel::tokenRefusedChanged);
  }
}

void AppModel::touchContact() {
  assign(m_fields.lastContact, std::optional(m_surroundings.clock.now()), &AppModel::lastContactChanged);
}

void AppModel::selectTranscriptItem(std::optional<std::string> itemId) {
  assign(m_fields.selectedTranscriptItemId, std::move(itemId), &AppModel::selectedTranscriptItemIdChanged);
}

void AppModel::handle(std::string_view url) {
  auto link = live::parseLink(url);
  if (!link) return;
  selectSession(link->sessionId);
  if (link->sessionId) loadSession(*std::move(link->sessionId));
}

}  // namespace varnel::model
