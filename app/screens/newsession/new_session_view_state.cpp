// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/newsession/new_session_view_state.h"

#include <QtCore/QPointer>
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "app/client/api_client.h"
#include "app/model/app_model.h"
#include "app/screens/session/capitalised.h"

namespace varnel::screens {
namespace {

struct Choice {
  const char* label;
  std::string_view value;
};

constexpr std::array kSandboxes{
    Choice{.label = QT_TRANSLATE_NOOP("NewSession", "Read only"), .value = "read-only"},
    Choice{.label = QT_TRANSLATE_NOOP("NewSession", "Workspace write"), .value = "workspace-write"},
    Choice{.label = QT_TRANSLATE_NOOP("NewSession", "Full host access"), .value = "danger-full-access"},
};
constexpr int kWorkspaceWrite = 1;
constexpr int kFullHostAccess = 2;

constexpr std::array kApprovals{
    Choice{.label = QT_TRANSLATE_NOOP("NewSession", "Ask when needed"), .value = "on-request"},
    Choice{.label = QT_TRANSLATE_NOOP("NewSession", "Never ask"), .value = "never"},
};
constexpr int kNeverAsk = 1;

QString tr(const char* text) {
  return QCoreApplication::translate("NewSession", text);
}

template <std::size_t N>
QStringList labelsOf(const std::array<Choice, N>& choices) {
  QStringList labels;
  for (const Choice& choice : choices) labels << tr(choice.label);
  return labels;
}

/// The row of a record in a picker whose row 0 stands for none.
template <class Record>
int rowOf(const std::vector<Record>& records, const std::optional<Record>& chosen) {
  if (!chosen) return 0;
  const auto found = std::ranges::find(records, chosen->identity(), &Record::identity);
  return found == records.end() ? 0 : static_cast<int>(found - records.begin()) + 1;
}

template <class Record>
std::optional<Record> recordAt(const std::vector<Record>& records, int row) {
  if (row < 1 || row > std::ssize(records)) return std::nullopt;
  return records[static_cast<std::size_t>(row - 1)];
}

std::string effortOf(const std::optional<wire::ModelOption>& model) {
  if (!model) return {};
  if (model->defaultEffort) return *model->defaultEffort;
  return model->efforts.empty() ? std::string() : model->efforts.front();
}

/// What the conversation goes on with, where both were chosen.
std::optional<wire::ConversationPreferences> preferencesOf(const wire::NewSessionBody& body) {
  if (!body.model || !body.reasoningEffort) return std::nullopt;
  return wire::ConversationPreferences{
      .mode = body.mode == "plan" ? wire::CodexCollaborationMode::Plan : wire::CodexCollaborationMode::Default,
      .model = *body.model,
      .reasoningEffort = *body.reasoningEffort,
      .serviceTier = "default"};
}

}  // namespace

NewSessionViewState::NewSessionViewState(model::AppModel& model, QObject* parent)
    : QObject(parent), m_model(model), m_sandbox(kWorkspaceWrite) {
  connect(&model, &model::AppModel::projectsChanged, this, &NewSessionViewState::changed);
  connect(&model, &model::AppModel::modelsChanged, this, &NewSessionViewState::changed);
}

QStringList NewSessionViewState::projects() const {
  QStringList paths{tr("Select a Git worktree")};
  for (const auto& project : m_model.projects()) paths << QString::fromStdString(project.path);
  return paths;
}

int NewSessionViewState::project() const {
  return rowOf(m_model.projects(), m_project);
}

void NewSessionViewState::setProject(int row) {
  m_project = recordAt(m_model.projects(), row);
  emit changed();
}

bool NewSessionViewState::isHighRisk() const {
  return m_project && m_project->highRisk;
}

void NewSessionViewState::setAcknowledged(bool acknowledged) {
  m_acknowledged = acknowledged;
  emit changed();
}

QStringList NewSessionViewState::modes() const {
  return {tr("Go"), tr("Plan")};
}

int NewSessionViewState::mode() const {
  return m_mode == wire::CodexCollaborationMode::Plan ? 1 : 0;
}

void NewSessionViewState::setMode(int row) {
  m_mode = row == 1 ? wire::CodexCollaborationMode::Plan : wire::CodexCollaborationMode::Default;
  emit changed();
}

QStringList NewSessionViewState::models() const {
  QStringList names{tr("Select model")};
  for (const auto& model : m_model.models()) names << QString::fromStdString(model.displayName);
  return names;
}

int NewSessionViewState::model() const {
  return rowOf(m_model.models(), m_chosenModel);
}

void NewSessionViewState::setModel(int row) {
  choose(recordAt(m_model.models(), row));
}

void NewSessionViewState::choose(std::optional<wire::ModelOption> model) {
  if (model == m_chosenModel) return;
  m_chosenModel = std::move(model);
  m_reasoning = effortOf(m_chosenModel);
  emit changed();
}

QStringList NewSessionViewState::efforts() const {
  QStringList names;
  if (!m_chosenModel) return names;
  for (const auto& effort : m_chosenModel->efforts) names << capitalised(QString::fromStdString(effort));
  return names;
}

int NewSessionViewState::effort() const {
  if (!m_chosenModel) return -1;
  const auto found = std::ranges::find(m_chosenModel->efforts, m_reasoning);
  return found == m_chosenModel->efforts.end() ? -1 : static_cast<int>(found - m_chosenModel->efforts.begin());
}

void NewSessionViewState::setEffort(int row) {
  if (!m_chosenModel || row < 0 || row >= std::ssize(m_chosenModel->efforts)) return;
  m_reasoning = m_chosenModel->efforts[static_cast<std::size_t>(row)];
  emit changed();
}

QStringList NewSessionViewState::sandboxes() const {
  return labelsOf(kSandboxes);
}

void NewSessionViewState::setSandbox(int row) {
  m_sandbox = std::clamp(row, 0, static_cast<int>(kSandboxes.size()) - 1);
  emit changed();
}

QStringList NewSessionViewState::approvals() const {
  return labelsOf(kApprovals);
}

void NewSessionViewState::setApproval(int row) {
  m_approval = std::clamp(row, 0, static_cast<int>(kApprovals.size()) - 1);
  emit changed();
}

bool NewSessionViewState::isUnsafe() const {
  return m_sandbox == kFullHostAccess || m_approval == kNeverAsk;
}

void NewSessionViewState::setPrompt(const QString& prompt) {
  if (prompt == m_prompt) return;
  m_prompt = prompt;
  emit promptChanged();
  emit changed();
}

bool NewSessionViewState::isCreateEnabled() const {
  return m_project && m_chosenModel && !m_prompt.trimmed().isEmpty() && (!isHighRisk() || m_acknowledged) &&
         !m_creating;
}

void NewSessionViewState::appeared() {
  refreshThenChoose();
}

QCoro::Task<> NewSessionViewState::refreshThenChoose() {
  const QPointer self(this);
  co_await m_model.refresh(true);
  if (!self) co_return;
  if (!m_chosenModel) {
    const auto preferred = std::ranges::find_if(m_model.models(), &wire::ModelOption::isDefault);
    if (preferred != m_model.models().end()) choose(*preferred);
  }
  if (m_reasoning.empty() && m_chosenModel) m_reasoning = m_chosenModel->defaultEffort.value_or(std::string());
  emit changed();
}

wire::NewSessionBody NewSessionViewState::body() const {
  wire::NewSessionBody body{.cwd = m_project->path,
                            .mode = m_mode == wire::CodexCollaborationMode::Plan ? "plan" : "default",
                            .model = std::nullopt,
                            .reasoningEffort = std::nullopt,
                            .sandbox = std::string(kSandboxes.at(static_cast<std::size_t>(m_sandbox)).value),
                            .approvalPolicy = std::string(kApprovals.at(static_cast<std::size_t>(m_approval)).value),
                            .acknowledgeHighRisk = m_acknowledged,
                            .prompt = m_prompt.toStdString()};
  if (m_chosenModel) {
    body.model = m_chosenModel->id;
    body.reasoningEffort = m_reasoning.empty() ? m_chosenModel->defaultEffort : std::optional(m_reasoning);
  }
  return body;
}

void NewSessionViewState::create() {
  if (isCreateEnabled()) createSession(body());
}

// Runs to its end though the screen may go.
QCoro::Task<> NewSessionViewState::createSession(wire::NewSessionBody body) {
  const QPointer self(this);
  const QPointer model(&m_model);
  const std::stop_token pairing = model->pairingToken();
  const QString sent = m_prompt;
  m_creating = true;
  emit changed();
  const auto created = co_await model->client().createSession(body, pairing);
  if (model && !pairing.stop_requested()) {
    if (created) {
      co_await model->refresh(true);
      if (model && !pairing.stop_requested()) {
        if (auto preferences = preferencesOf(body)) model->setSessionPreferences(*created, *std::move(preferences));
        model->selectSession(*created);
      }
    } else {
      model->report(created.error());
    }
  }
  if (self) finish(created.has_value(), sent);
}

void NewSessionViewState::finish(bool created, const QString& sent) {
  // Words that were added while the request ran would go with the rest.
  m_lostPrompt = created && m_prompt == sent ? QString() : m_prompt;
  m_creating = false;
  setPrompt({});
  emit changed();
}

void NewSessionViewState::restorePrompt() {
  if (m_lostPrompt.isEmpty()) return;
  const QString lost = std::exchange(m_lostPrompt, {});
  setPrompt(m_prompt.isEmpty() ? lost : lost + QLatin1Char('\n') + m_prompt);
  emit changed();
}

}  // namespace varnel::screens
