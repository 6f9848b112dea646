// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/settings/settings_view_state.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "app/client/api_client.h"
#include "app/model/app_model.h"
#include "app/ui/relative_time.h"

namespace varnel::screens {
namespace {

constexpr std::chrono::seconds kTimesRefreshed{20};
const QString kContract = QStringLiteral("1");
constexpr std::array kAppearances{"system", "light", "dark"};
constexpr std::array kLanguages{"", "en", "fr"};

template <std::size_t N>
int rowOf(const std::array<const char*, N>& values, const QString& value) {
  const auto* const found =
      std::ranges::find_if(values, [&](const char* each) { return value == QLatin1String(each); });
  return found == values.end() ? 0 : static_cast<int>(found - values.begin());
}

template <std::size_t N>
QString valueAt(const std::array<const char*, N>& values, int row) {
  return QString::fromLatin1(values.at(static_cast<std::size_t>(std::clamp(row, 0, static_cast<int>(N) - 1))));
}

/// Without who asks and without a port; the brackets of a numeric address stay.
QString hostOf(std::string_view authority) {
  if (const auto at = authority.rfind('@'); at != std::string_view::npos) authority.remove_prefix(at + 1);
  const auto end = authority.starts_with('[') ? authority.find(']') + 1 : authority.find(':');
  authority = authority.substr(0, end);
  return QString::fromUtf8(authority.data(), static_cast<qsizetype>(authority.size()));
}

}  // namespace

SettingsViewState::SettingsViewState(model::AppModel& model, AppSettings& settings, ScreenSurroundings surroundings,
                                     QObject* parent)
    : QObject(parent), m_model(model), m_settings(settings), m_surroundings(std::move(surroundings)) {
  connect(&model, &model::AppModel::credentialsChanged, this, &SettingsViewState::changed);
  connect(&model, &model::AppModel::connectedChanged, this, &SettingsViewState::changed);
  connect(&model, &model::AppModel::lastContactChanged, this, &SettingsViewState::changed);
  connect(&settings, &AppSettings::changed, this, &SettingsViewState::changed);
  connect(&m_clockTick, &QTimer::timeout, this, &SettingsViewState::changed);
  m_clockTick.start(kTimesRefreshed);
}

QString SettingsViewState::host() const {
  if (m_model.credentials()) {
    const auto parts = m_model.credentials()->baseURL.parts();
    const QString host = hostOf(parts.authority.value_or(std::string_view()));
    if (!host.isEmpty()) return host;
  }
  return tr("Not paired");
}

QString SettingsViewState::status() const {
  return m_model.isConnected() ? tr("Connected") : tr("Reconnecting");
}

QString SettingsViewState::lastContact() const {
  return m_model.lastContact() ? ui::relativeTime(*m_model.lastContact(), m_surroundings.now()) : QString();
}

QString SettingsViewState::activitiesAllowed() const {
  return m_surroundings.activitiesEnabled() ? tr("Yes") : tr("No");
}

QString SettingsViewState::bridgeContract() const {
  const QString spoken = QString::fromStdString(m_model.client().bridgeContract());
  if (spoken.isEmpty() || spoken == kContract) return {};
  return tr("The bridge speaks version %1 of the contract, this app version %2.").arg(spoken, kContract);
}

QStringList SettingsViewState::appearances() const {
  return {tr("System"), tr("Light"), tr("Dark")};
}

int SettingsViewState::appearance() const {
  return rowOf(kAppearances, m_settings.text(AppSettings::kAppearance));
}

void SettingsViewState::setAppearance(int row) {
  m_settings.setText(AppSettings::kAppearance, valueAt(kAppearances, row));
}

QStringList SettingsViewState::languages() const {
  // Languages are named in themselves: whoever is lost in one must find the way out.
  return {tr("System"), QStringLiteral("English"), QStringLiteral("Français")};
}

int SettingsViewState::language() const {
  return rowOf(kLanguages, m_settings.text(AppSettings::kLanguage));
}

void SettingsViewState::setLanguage(int row) {
  m_settings.setText(AppSettings::kLanguage, valueAt(kLanguages, row));
}

void SettingsViewState::clearActivity() {
  m_model.clearActivity();
}

void SettingsViewState::forgetHost() {
  m_model.unpair();
}

void SettingsViewState::quit() {
  m_surroundings.quit();
}

}  // namespace varnel::screens
