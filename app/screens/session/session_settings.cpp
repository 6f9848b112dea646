// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/session_settings.h"

#include <QtCore/QLocale>
#include <QtCore/QPointer>
#include <algorithm>
#include <utility>

#include "app/client/api_client.h"
#include "app/client/async.h"
#include "app/model/app_model.h"
#include "app/screens/session/capitalised.h"
#include "core/transcript/context_use.h"

namespace varnel::screens {
namespace {

using wire::CodexCollaborationMode;

constexpr const char* kPriorityTier = "priority";

QVariantMap entry(const QString& id, const QString& label, bool checked) {
  return {{QStringLiteral("id"), id}, {QStringLiteral("label"), label}, {QStringLiteral("checked"), checked}};
}

std::string firstEffort(const wire::ModelOption* model, const std::string& otherwise) {
  if (model == nullptr) return otherwise;
  if (model->defaultEffort) return *model->defaultEffort;
  return model->efforts.empty() ? otherwise : model->efforts.front();
}

}  // namespace

SessionSettings::SessionSettings(model::AppModel& model, std::string sessionId, QObject* parent)
    : QObject(parent), m_model(model), m_sessionId(std::move(sessionId)) {
  connect(&model, &model::AppModel::modelsChanged, this, &SessionSettings::changed);
  connect(&model, &model::AppModel::sessionsChanged, this, &SessionSettings::changed);
  m_debounce.setSingleShot(true);
  m_debounce.setInterval(kDebounce);
  m_debounce.setTimerType(Qt::PreciseTimer);
  connect(&m_debounce, &QTimer::timeout, this, [this] { updateSettings(); });
  load();
}

SessionSettings::~SessionSettings() {
  m_settingsTask.request_stop();
}

std::optional<wire::ConversationPreferences> SessionSettings::preferences() const {
  if (m_choice.selectedModelId.empty() || m_choice.reasoning.empty()) return std::nullopt;
  return wire::ConversationPreferences{.mode = m_choice.mode,
                                       .model = m_choice.selectedModelId,
                                       .reasoningEffort = m_choice.reasoning,
                                       .serviceTier = m_choice.fastMode ? kPriorityTier : "default"};
}

void SessionSettings::setGoalMode(bool goal) {
  if (m_goalMode == goal) return;
  m_goalMode = goal;
  emit goalModeChanged();
  tellLater();
}

// The entry that was chosen is made anew by the change, and its menu closes only after it has told of the choice.
void SessionSettings::tellLater() {
  QMetaObject::invokeMethod(this, &SessionSettings::changed, Qt::QueuedConnection);
}

QString SessionSettings::modelLabel() const {
  const auto* chosen = selectedModel();
  return tr("Model · %1").arg(chosen != nullptr ? QString::fromStdString(chosen->displayName) : tr("Unknown"));
}

QVariantList SessionSettings::models() const {
  QVariantList result;
  for (const auto& model : m_model.models()) {
    result.append(entry(QString::fromStdString(model.id), QString::fromStdString(model.displayName),
                        model.id == m_choice.selectedModelId));
  }
  return result;
}

QString SessionSettings::thinkingLabel() const {
  return tr("Thinking · %1").arg(capitalised(QString::fromStdString(m_choice.reasoning)));
}

QVariantList SessionSettings::efforts() const {
  QVariantList result;
  const auto* chosen = selectedModel();
  if (chosen == nullptr) return result;
  for (const std::string& effort : chosen->efforts) {
    const QString name = QString::fromStdString(effort);
    result.append(entry(name, capitalised(name), effort == m_choice.reasoning));
  }
  return result;
}

QString SessionSettings::modeLabel() const {
  const auto name = [this] {
    if (m_goalMode) return tr("Goal");
    return m_choice.mode == CodexCollaborationMode::Plan ? tr("Plan") : tr("Live");
  };
  return tr("Mode · %1").arg(name());
}

QVariantList SessionSettings::modes() const {
  const auto mode = [](const char* id, const QString& label, const char* symbol, bool checked) {
    QVariantMap map = entry(QLatin1String(id), label, checked);
    map.insert(QStringLiteral("symbol"), QLatin1String(symbol));
    return map;
  };
  const bool plan = m_choice.mode == CodexCollaborationMode::Plan;
  return {mode("live", tr("Live"), "waveform", !plan && !m_goalMode),
          mode("plan", tr("Plan"), "list.bullet.clipboard", plan && !m_goalMode),
          mode("goal", tr("Goal"), "flag", m_goalMode)};
}

bool SessionSettings::isFastEnabled() const {
  const auto* chosen = selectedModel();
  return chosen != nullptr && std::ranges::find(chosen->serviceTiers, kPriorityTier, &wire::ServiceTierOption::id) !=
                                  chosen->serviceTiers.end();
}

bool SessionSettings::hasUsage() const {
  return usage().has_value();
}

QString SessionSettings::tokensText() const {
  const auto tokens = usage().value_or(wire::ConversationTokenUsage());
  const QLocale locale;
  return tr("%1 of %2 tokens")
      .arg(locale.toString(qlonglong{tokens.contextTokens}), locale.toString(qlonglong{tokens.contextWindow}));
}

QString SessionSettings::usedText() const {
  const auto tokens = usage();
  return tokens ? tr("%1% used").arg(transcript::contextUsePercent(*tokens)) : QString();
}

QString SessionSettings::contextLabel() const {
  const auto tokens = usage();
  return tokens ? tr("Live Context · %1%").arg(transcript::contextUsePercent(*tokens)) : tr("Live Context · Waiting");
}

void SessionSettings::chooseModel(const QString& id) {
  Choice next = m_choice;
  next.selectedModelId = id.toStdString();
  next.reasoning = firstEffort(model(next.selectedModelId), "medium");
  choose(std::move(next));
}

void SessionSettings::chooseEffort(const QString& effort) {
  Choice next = m_choice;
  next.reasoning = effort.toStdString();
  choose(std::move(next));
}

void SessionSettings::chooseMode(const QString& mode) {
  Choice next = m_choice;
  next.mode = mode == QLatin1String("plan") ? CodexCollaborationMode::Plan : CodexCollaborationMode::Default;
  setGoalMode(mode == QLatin1String("goal"));
  choose(std::move(next));
}

void SessionSettings::setFastMode(bool fast) {
  Choice next = m_choice;
  next.fastMode = fast;
  choose(std::move(next));
}

void SessionSettings::choose(Choice choice) {
  if (choice == m_choice) return;
  m_choice = std::move(choice);
  tellLater();
  queueSettingsUpdate();
}

const wire::ModelOption* SessionSettings::model(const std::string& id) const {
  const auto& models = m_model.models();
  const auto found = std::ranges::find(models, id, &wire::ModelOption::id);
  return found == models.end() ? nullptr : &*found;
}

std::optional<wire::ConversationTokenUsage> SessionSettings::usage() const {
  const auto* session = m_model.session(m_sessionId);
  return session != nullptr ? session->tokenUsage : std::nullopt;
}

// The conversation is read once more behind the lists: what it says of itself is the newer.
QCoro::Task<> SessionSettings::load() {
  const QPointer self(this);
  const QPointer model(&m_model);
  const std::string id = m_sessionId;
  co_await model->refresh(false);
  if (!self || !model) co_return;
  co_await model->loadSession(id);
  if (!self || !model) co_return;
  takeStored();
  m_controlsReady = true;
  emit changed();
  emit ready();
}

void SessionSettings::takeStored() {
  m_choice = {};
  if (const auto stored = m_model.preferences(m_sessionId)) {
    m_choice = {.mode = stored->mode,
                .selectedModelId = stored->model,
                .reasoning = stored->reasoningEffort,
                .fastMode = stored->serviceTier == kPriorityTier};
    return;
  }
  const auto& models = m_model.models();
  if (models.empty()) return;
  const auto preferred = std::ranges::find_if(models, &wire::ModelOption::isDefault);
  m_choice.selectedModelId = (preferred == models.end() ? models.front() : *preferred).id;
  m_choice.reasoning = firstEffort(selectedModel(), "");
}

void SessionSettings::queueSettingsUpdate() {
  if (!m_controlsReady || !preferences()) return;
  m_settingsTask.request_stop();
  m_debounce.start();
}

QCoro::Task<> SessionSettings::updateSettings() {
  const QPointer model(&m_model);
  const auto chosen = preferences();
  if (!chosen) co_return;
  m_settingsTask = std::stop_source();
  const client::EitherStop stop(m_settingsTask.get_token(), model->pairingToken());
  model->setSessionPreferences(m_sessionId, *chosen);
  const auto updated = co_await model->client().updateSettings(m_sessionId, *chosen, stop.token());
  if (model && !updated) model->report(updated.error());
}

}  // namespace varnel::screens
