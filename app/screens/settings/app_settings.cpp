// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/settings/app_settings.h"

#include <string>
#include <utility>

namespace varnel::screens {

AppSettings::AppSettings(std::shared_ptr<platform::DefaultsStore> defaults, QObject* parent)
    : QObject(parent), m_defaults(std::move(defaults)) {}

bool AppSettings::isOn(std::string_view key) const {
  return m_defaults->get<bool>(key).value_or(true);
}

void AppSettings::setOn(std::string_view key, bool on) {
  // A switch that could not be stored shows what holds.
  static_cast<void>(m_defaults->set(key, on));
  emit changed();
}

QString AppSettings::text(std::string_view key) const {
  return QString::fromStdString(m_defaults->get<std::string>(key).value_or(std::string()));
}

void AppSettings::setText(std::string_view key, const QString& text) {
  static_cast<void>(m_defaults->set(key, text.toStdString()));
  emit changed();
}

}  // namespace varnel::screens
