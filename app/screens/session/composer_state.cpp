// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/composer_state.h"

#include <QtCore/QLocale>
#include <QtCore/QPointer>
#include <algorithm>
#include <iterator>
#include <stop_token>
#include <utility>

#include "app/client/api_client.h"
#include "app/client/async.h"
#include "app/model/app_model.h"
#include "app/screens/session/session_settings.h"

namespace varnel::screens {

namespace {

// Said to the agent in place of a text that is missing, so in no other language.
constexpr QLatin1StringView kInspectFiles("Please inspect the attached files.");
constexpr QLatin1StringView kCompleteWithFiles("Inspect the attached files and complete this goal.");

}  // namespace

ComposerState::ComposerState(model::AppModel& model, std::string sessionId, SessionSettings& settings,
                             SessionServices services, QObject* parent)
    : QObject(parent),
      m_model(model),
      m_sessionId(std::move(sessionId)),
      m_settings(settings),
      m_services(std::move(services)) {
  connect(&model, &model::AppModel::sessionsChanged, this, &ComposerState::changed);
  connect(&model, &model::AppModel::queuedChanged, this, [this](const std::string& id) {
    if (id == m_sessionId) updateQueue();
  });
  connect(&settings, &SessionSettings::changed, this, &ComposerState::changed);
  connect(&settings, &SessionSettings::goalModeChanged, this, &ComposerState::contentChanged);
  m_draftTimer.setSingleShot(true);
  m_draftTimer.setInterval(kDraftDelay);
  connect(&m_draftTimer, &QTimer::timeout, this, &ComposerState::saveDraft);
  updateQueue();
  QTimer::singleShot(0, this, &ComposerState::restoreDraft);
}

ComposerState::~ComposerState() {
  saveDraft();
}

void ComposerState::setMessage(const QString& message) {
  if (m_message == message) return;
  m_message = message;
  emit messageChanged();
  contentChanged();
}

void ComposerState::setPreedit(const QString& preedit) {
  if (m_preedit == preedit) return;
  m_preedit = preedit;
  emit changed();
}

bool ComposerState::isActive() const {
  const auto* session = m_model.session(m_sessionId);
  return session != nullptr && session->active;
}

bool ComposerState::hasContent() const {
  return !(m_message + m_preedit).trimmed().isEmpty() || !m_attachments.empty();
}

bool ComposerState::isSendEnabled() const {
  if (isActive()) return !m_stopping;
  return hasContent() && !m_sending && m_settings.preferences() && m_uploadsInProgress == 0;
}

QString ComposerState::sendLabel() const {
  return isActive() ? tr("Stop current task") : tr("Send message");
}

QString ComposerState::sendSymbol() const {
  return isActive() ? QStringLiteral("stop.fill") : QStringLiteral("arrow.up");
}

bool ComposerState::canQueue() const {
  return isActive() && m_model.queued(m_sessionId) != nullptr && hasContent() && !m_sending &&
         m_settings.preferences() && m_uploadsInProgress == 0;
}

void ComposerState::sendOrStop() {
  if (isActive()) {
    stop();
  } else {
    send();
  }
}

void ComposerState::send() {
  if (!isActive() && isSendEnabled()) sendMessage();
}

void ComposerState::stop() {
  if (isActive() && !m_stopping) interrupt();
}

void ComposerState::sendWhenDone() {
  if (canQueue()) queueMessage();
}

void ComposerState::editQueued(const QString& id) {
  takeBack(id.toStdString(), true);
}

void ComposerState::cancelQueued(const QString& id) {
  takeBack(id.toStdString(), false);
}

void ComposerState::attachFiles(const QList<QUrl>& files) {
  std::vector<MediaSource> picks;
  for (const QUrl& file : files.first(std::min<qsizetype>(files.size(), kItemsInPick))) {
    if (file.isLocalFile()) picks.push_back({.path = file.toLocalFile(), .image = {}});
  }
  upload(std::move(picks));
}

bool ComposerState::paste() {
  const platform::MediaOffer offer = m_services.clipboardMedia();
  if (offer.isEmpty()) return false;
  if (!offer.files.isEmpty()) {
    attachFiles(offer.files);
  } else {
    upload({MediaSource{.path = {}, .image = offer.image}});
  }
  return true;
}

void ComposerState::removeAttachment(const QString& id) {
  Attachments kept = m_attachments;
  std::erase_if(kept, [key = id.toStdString()](const auto& each) { return each.id == key; });
  setAttachments(std::move(kept));
}

void ComposerState::append(const QString& text) {
  const bool joined = m_message.isEmpty() || m_message.back().isSpace();
  setMessage(joined ? m_message + text : m_message + QLatin1Char(' ') + text);
}

void ComposerState::putInFront(const QString& text) {
  if (text.isEmpty()) return;
  setMessage(m_message.isEmpty() ? text : text + QLatin1Char('\n') + m_message);
}

ComposerState::Outgoing ComposerState::takeOutgoing() {
  m_outgoing = {.text = m_message.trimmed(), .attachments = m_attachments, .goal = m_settings.isGoalMode()};
  m_sending = true;
  setMessage({});
  setAttachments({});
  emit changed();
  return m_outgoing;
}

void ComposerState::giveBack(const Outgoing& outgoing) {
  m_outgoing = {};
  Attachments all = outgoing.attachments;
  std::ranges::copy(m_attachments, std::back_inserter(all));
  setAttachments(std::move(all));
  putInFront(outgoing.text);
}

void ComposerState::setAttachments(Attachments attachments) {
  if (m_attachments == attachments) return;
  m_attachments = std::move(attachments);
  std::vector<AttachmentRow> rows;
  std::ranges::transform(m_attachments, std::back_inserter(rows), attachmentRow);
  m_attachmentRows.assign(std::move(rows));
  contentChanged();
}

void ComposerState::contentChanged() {
  m_draftTimer.start();
  emit changed();
}

device::Draft ComposerState::draft() const {
  device::Draft draft{
      .text = m_outgoing.text.toStdString(), .attachments = m_outgoing.attachments, .goal = m_settings.isGoalMode()};
  if (!draft.text.empty() && !m_message.isEmpty()) draft.text += '\n';
  draft.text += m_message.toStdString();
  std::ranges::copy(m_attachments, std::back_inserter(draft.attachments));
  return draft;
}

void ComposerState::saveDraft() {
  m_draftTimer.stop();
  if (m_services.drafts != nullptr && m_restored) m_services.drafts->set(m_sessionId, draft());
}

void ComposerState::restoreDraft() {
  m_restored = true;
  if (m_services.drafts == nullptr) return;
  const device::Draft draft = m_services.drafts->draft(m_sessionId);
  giveBack({.text = QString::fromStdString(draft.text), .attachments = draft.attachments});
  if (draft.goal) m_settings.setGoalMode(true);
}

void ComposerState::updateQueue() {
  std::vector<QueuedRow> rows;
  if (const auto* queued = m_model.queued(m_sessionId)) {
    std::ranges::transform(*queued, std::back_inserter(rows), queuedRow);
  }
  m_queueRows.assign(std::move(rows));
  emit changed();
}

void ComposerState::upload(std::vector<MediaSource> picks) {
  if (!picks.empty()) uploadAll(std::move(picks));
}

void ComposerState::setUploads(int count, const QString& progress) {
  m_uploadsInProgress = std::max(0, count);
  m_uploadProgress = progress;
  emit changed();
}

QCoro::Task<> ComposerState::uploadAll(std::vector<MediaSource> picks) {
  const QPointer self(this);
  const QPointer model(&m_model);
  const auto read = m_services.readMedia;
  const std::string id = m_sessionId;
  const std::stop_token pairing = model->pairingToken();
  const int count = static_cast<int>(picks.size());
  setUploads(m_uploadsInProgress + count, {});
  for (int done = 0; done < count; ++done) {
    auto media =
        co_await client::onWorker([read, pick = picks[static_cast<std::size_t>(done)]] { return read(pick); }, pairing);
    if (!self || !model || pairing.stop_requested()) break;
    if (!media || !*media) continue;
    const QString size = QLocale().formattedDataSize((*media)->data.size(), 1, QLocale::DataSizeTraditionalFormat);
    setUploads(m_uploadsInProgress, tr("%1 of %2 · %3").arg(done + 1).arg(count).arg(size));
    const std::string type = (*media)->type.mimeType.toStdString();
    const std::string name = (*media)->fileName().toStdString();
    auto stored = co_await model->client().upload(id, std::move((*media)->data), type, name, pairing);
    if (!self || !model || pairing.stop_requested()) break;
    if (!stored) {
      model->report(stored.error());
      continue;
    }
    Attachments all = m_attachments;
    all.push_back(*std::move(stored));
    setAttachments(std::move(all));
  }
  if (self) setUploads(m_uploadsInProgress - count, {});
}

QCoro::Task<> ComposerState::sendMessage() {
  const QPointer self(this);
  const QPointer model(&m_model);
  const auto preferences = m_settings.preferences();
  const Outgoing outgoing = takeOutgoing();
  QString text = outgoing.text;
  if (text.isEmpty()) {
    text = outgoing.goal ? kCompleteWithFiles : kInspectFiles;
  }
  bool sent = false;
  if (preferences) {
    auto sending =
        model->sendMessage(m_sessionId, text.toStdString(), *preferences, outgoing.attachments, outgoing.goal);
    sent = co_await sending;
  }
  if (!self) co_return;
  m_outgoing = {};
  m_sending = false;
  if (!sent) giveBack(outgoing);
  if (sent && outgoing.goal) m_settings.setGoalMode(false);
  saveDraft();
  emit changed();
}

QCoro::Task<> ComposerState::queueMessage() {
  const QPointer self(this);
  const QPointer model(&m_model);
  const std::string id = m_sessionId;
  const std::stop_token pairing = model->pairingToken();
  const auto preferences = m_settings.preferences();
  const Outgoing outgoing = takeOutgoing();
  const QString text = outgoing.text.isEmpty() ? QString(kInspectFiles) : outgoing.text;
  const auto queued =
      co_await model->client().queueMessage(id, text.toStdString(), *preferences, outgoing.attachments, pairing);
  if (!model) co_return;
  if (self) {
    m_outgoing = {};
    m_sending = false;
    if (!queued) giveBack(outgoing);
    saveDraft();
    emit changed();
  }
  if (pairing.stop_requested()) co_return;
  if (!queued) model->report(queued.error());
  co_await model->loadSession(id);
}

QCoro::Task<> ComposerState::takeBack(std::string id, bool edit) {
  const QPointer self(this);
  const QPointer model(&m_model);
  const std::string sessionId = m_sessionId;
  const std::stop_token pairing = model->pairingToken();
  const auto taken = co_await model->client().unqueue(sessionId, id, pairing);
  if (!model || pairing.stop_requested()) co_return;
  if (!taken) model->report(taken.error());
  if (self && taken && edit) {
    for (const wire::QueuedMessage& each : taken->queued) {
      giveBack({.text = QString::fromStdString(each.text), .attachments = each.attachments});
    }
  }
  co_await model->loadSession(sessionId);
}

QCoro::Task<> ComposerState::interrupt() {
  const QPointer self(this);
  const QPointer model(&m_model);
  const std::string id = m_sessionId;
  const std::stop_token pairing = model->pairingToken();
  m_stopping = true;
  emit changed();
  const auto interrupted = co_await model->client().interrupt(id, pairing);
  if (!model) co_return;
  if (self) {
    m_stopping = false;
    emit changed();
  }
  if (pairing.stop_requested()) co_return;
  if (!interrupted) model->report(interrupted.error());
  co_await model->loadSession(id);
}

}  // namespace varnel::screens
