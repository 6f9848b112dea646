// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/pending_request_card_state.h"

#include <QtCore/QPointer>
#include <stop_token>
#include <utility>

#include "app/client/api_client.h"
#include "app/model/app_model.h"
#include "app/screens/session/diff_text.h"
#include "core/base/plain_sight.h"
#include "core/transcript/request_card.h"

namespace varnel::screens {
namespace {

QString plainly(const std::string& text) {
  return QString::fromStdString(base::inPlainSight(text));
}

}  // namespace

PendingRequestCardState::PendingRequestCardState(model::AppModel& model, wire::PendingRequest request,
                                                 std::function<std::chrono::milliseconds()> now, QObject* parent)
    : QObject(parent), m_model(model), m_request(std::move(request)), m_now(std::move(now)), m_disturbed(m_now()) {}

void PendingRequestCardState::setRequest(wire::PendingRequest request) {
  if (m_request == request) return;
  m_request = std::move(request);
  disturb();
  emit requestChanged();
}

void PendingRequestCardState::setPosition(int place, int count) {
  const QString position = count > 1 ? tr("%1 of %2").arg(place).arg(count) : QString();
  if (m_position == position) return;
  m_position = position;
  emit positionChanged();
}

QString PendingRequestCardState::method() const {
  return plainly(transcript::shownMethod(m_request.method));
}

bool PendingRequestCardState::isQuestion() const {
  return transcript::cardKind(m_request.method) == transcript::CardKind::Question;
}

QVariantList PendingRequestCardState::questions() const {
  QVariantList result;
  if (!isQuestion()) return result;
  for (const auto& asked : transcript::askedQuestions(m_request)) {
    QVariantList options;
    for (const auto& option : asked.options) {
      options.append(QVariantMap{{QStringLiteral("label"), QString::fromStdString(option.label)},
                                 {QStringLiteral("shown"), plainly(option.label)},
                                 {QStringLiteral("description"), plainly(option.description)}});
    }
    result.append(QVariantMap{{QStringLiteral("header"), plainly(asked.header)},
                              {QStringLiteral("question"), plainly(asked.question)},
                              {QStringLiteral("options"), options}});
  }
  return result;
}

QString PendingRequestCardState::sharedReply() const {
  return isQuestion() && transcript::askedQuestions(m_request).size() > 1
             ? tr("One reply answers all of these questions.")
             : QString();
}

QVariantList PendingRequestCardState::facts() const {
  QVariantList result;
  for (const auto& fact : transcript::requestFacts(m_request)) {
    result.append(QVariantMap{{QStringLiteral("label"), QString::fromStdString(fact.label)},
                              {QStringLiteral("text"), plainly(fact.text)},
                              {QStringLiteral("verbatim"), fact.verbatim}});
  }
  return result;
}

QString PendingRequestCardState::diff() const {
  return diffText(json::JSONValue(m_request.params));
}

QString PendingRequestCardState::details() const {
  return plainly(json::JSONValue(m_request.params).prettyPrinted());
}

QVariantList PendingRequestCardState::scopes() const {
  QVariantList result;
  for (const auto& scope : transcript::scopeOptions(m_request)) {
    result.append(QVariantMap{{QStringLiteral("decision"), QString::fromStdString(scope.decision)},
                              {QStringLiteral("label"), QString::fromStdString(scope.label)}});
  }
  return result;
}

void PendingRequestCardState::setSelectedDecision(const QString& decision) {
  if (m_selectedDecision == decision) return;
  m_selectedDecision = decision;
  emit selectedDecisionChanged();
}

void PendingRequestCardState::setAnswer(const QString& answer) {
  if (m_answer == answer) return;
  m_answer = answer;
  emit answerChanged();
  emit sendEnabledChanged();
}

void PendingRequestCardState::setShowingDetail(bool showing) {
  if (m_showingDetail == showing) return;
  m_showingDetail = showing;
  disturb();
  emit showingDetailChanged();
  emit sendEnabledChanged();
}

void PendingRequestCardState::decline() {
  if (!m_showingDetail || !mayAnswer()) return;
  resolve(Button::Decline, transcript::decisionResult(m_request, "decline"));
}

void PendingRequestCardState::approve() {
  if (!m_showingDetail || !mayAnswer()) return;
  resolve(Button::Approve, transcript::decisionResult(m_request, m_selectedDecision.toStdString()));
}

void PendingRequestCardState::sendAnswer() {
  if (!isSendEnabled() || !mayAnswer()) return;
  resolve(Button::Send, transcript::questionResult(m_request, m_answer.toStdString()));
}

void PendingRequestCardState::disturb() {
  m_disturbed = m_now();
}

bool PendingRequestCardState::mayAnswer() const {
  return m_underWay == Button::None && m_now() - m_disturbed >= kCalm;
}

// A refusal is followed by a load as well: the request may have been answered elsewhere, and then the card goes.
QCoro::Task<> PendingRequestCardState::resolve(Button button, json::JSONValue result) {
  const QPointer self(this);
  const QPointer model(&m_model);
  const std::stop_token pairing = model->pairingToken();
  const std::string sessionId = m_request.sessionId;
  setUnderWay(button);
  const auto resolved = co_await model->client().resolve(m_request.id, std::move(result), pairing);
  if (!model) co_return;
  if (!pairing.stop_requested()) {
    if (!resolved) model->report(resolved.error());
    if (self && resolved && button == Button::Decline) emit declined();
    co_await model->loadSession(sessionId);
  }
  if (self) setUnderWay(Button::None);
}

void PendingRequestCardState::setUnderWay(Button button) {
  m_underWay = button;
  emit underWayChanged();
}

}  // namespace varnel::screens
