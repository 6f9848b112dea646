// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <chrono>
#include <functional>
#include <string>

#include "core/json/value.h"
#include "core/wire/request.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// One request of the agent that waits for an answer. What is shown of it is made safe to read; what is sent is exactly
/// what the agent asked for. Lives as long as the request is unanswered.
class PendingRequestCardState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString method READ method NOTIFY requestChanged)
  Q_PROPERTY(bool question READ isQuestion NOTIFY requestChanged)
  Q_PROPERTY(QVariantList questions READ questions NOTIFY requestChanged)
  Q_PROPERTY(QString sharedReply READ sharedReply NOTIFY requestChanged)
  Q_PROPERTY(QVariantList facts READ facts NOTIFY requestChanged)
  Q_PROPERTY(QString diff READ diff NOTIFY requestChanged)
  Q_PROPERTY(QString details READ details NOTIFY requestChanged)
  Q_PROPERTY(QVariantList scopes READ scopes NOTIFY requestChanged)
  Q_PROPERTY(QString position READ position NOTIFY positionChanged)
  Q_PROPERTY(QString selectedDecision READ selectedDecision WRITE setSelectedDecision NOTIFY selectedDecisionChanged)
  Q_PROPERTY(QString answer READ answer WRITE setAnswer NOTIFY answerChanged)
  Q_PROPERTY(bool showingDetail READ isShowingDetail WRITE setShowingDetail NOTIFY showingDetailChanged)
  Q_PROPERTY(bool decideEnabled READ isShowingDetail NOTIFY showingDetailChanged)
  Q_PROPERTY(bool sendEnabled READ isSendEnabled NOTIFY sendEnabledChanged)
  Q_PROPERTY(Button underWay READ underWay NOTIFY underWayChanged)

 public:
  enum class Button { None, Decline, Approve, Send };
  Q_ENUM(Button)

  /// How long a card must have stood still before it can be answered.
  static constexpr std::chrono::milliseconds kCalm{400};

  PendingRequestCardState(model::AppModel& model, wire::PendingRequest request,
                          std::function<std::chrono::milliseconds()> now, QObject* parent);

  /// What the bridge says of the same request now.
  void setRequest(wire::PendingRequest request);
  /// Its place among those that wait, from 1.
  void setPosition(int place, int count);

  [[nodiscard]] QString method() const;
  [[nodiscard]] bool isQuestion() const;
  /// Each a map of header, question and options (label as it is sent, shown, description).
  [[nodiscard]] QVariantList questions() const;
  /// Says so when one reply answers several questions; empty otherwise.
  [[nodiscard]] QString sharedReply() const;
  /// What would be done, in full, each a map of label, text and verbatim.
  [[nodiscard]] QVariantList facts() const;
  [[nodiscard]] QString diff() const;
  [[nodiscard]] QString details() const;
  /// Each a map of decision and label; empty when there is nothing to choose.
  [[nodiscard]] QVariantList scopes() const;
  /// "1 of 5", or nothing when it waits alone.
  [[nodiscard]] QString position() const { return m_position; }
  [[nodiscard]] QString selectedDecision() const { return m_selectedDecision; }
  void setSelectedDecision(const QString& decision);
  [[nodiscard]] QString answer() const { return m_answer; }
  void setAnswer(const QString& answer);
  [[nodiscard]] bool isShowingDetail() const { return m_showingDetail; }
  void setShowingDetail(bool showing);
  [[nodiscard]] bool isSendEnabled() const { return m_showingDetail && !m_answer.isEmpty(); }
  /// The button whose answer is on its way.
  [[nodiscard]] Button underWay() const { return m_underWay; }

  // Each does nothing while the card does not stand still, and while an answer is on its way.
  Q_INVOKABLE void decline();
  Q_INVOKABLE void approve();
  Q_INVOKABLE void sendAnswer();
  /// It appeared, moved or changed its height: what is pressed now may have been meant for what stood there before.
  Q_INVOKABLE void disturb();

 signals:
  void requestChanged();
  void positionChanged();
  void selectedDecisionChanged();
  void answerChanged();
  void showingDetailChanged();
  void sendEnabledChanged();
  void underWayChanged();
  void declined();

 private:
  [[nodiscard]] bool mayAnswer() const;
  QCoro::Task<> resolve(Button button, json::JSONValue result);
  void setUnderWay(Button button);

  model::AppModel& m_model;
  wire::PendingRequest m_request;
  std::function<std::chrono::milliseconds()> m_now;
  std::chrono::milliseconds m_disturbed;
  QString m_position;
  QString m_selectedDecision = QStringLiteral("accept");
  QString m_answer;
  bool m_showingDetail = false;
  Button m_underWay = Button::None;
};

}  // namespace varnel::screens
