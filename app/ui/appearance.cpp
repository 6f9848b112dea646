// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/appearance.h"

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <algorithm>

namespace varnel::ui {
namespace {

using Groups = QMap<QString, QVariantMap>;

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString kDesktopGroup = QStringLiteral("org.gnome.desktop.interface");
constexpr unsigned kPrefersDark = 1;
constexpr unsigned kPrefersHighContrast = 1;

}  // namespace

std::optional<ColorScheme> colorSchemeNamed(const QString& name) {
  if (name == QLatin1String("system")) return ColorScheme::System;
  if (name == QLatin1String("light")) return ColorScheme::Light;
  if (name == QLatin1String("dark")) return ColorScheme::Dark;
  return std::nullopt;
}

Appearance::Appearance(ColorScheme scheme, const QDBusConnection& bus, QObject* parent)
    : QObject(parent), m_scheme(scheme) {
  if (!bus.isConnected()) return;
  // Slots are matched by the names of their types, and nobody has told this one's yet.
  qRegisterMetaType<QDBusVariant>();
  QDBusConnection connection = bus;
  connection.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                     SLOT(onSettingChanged(QString, QString, QDBusVariant)));
  readAll(connection);
}

void Appearance::setScheme(ColorScheme scheme) {
  if (scheme == m_scheme) return;
  m_scheme = scheme;
  emit changed();
}

bool Appearance::dark() const {
  return m_scheme == ColorScheme::Dark || (m_scheme == ColorScheme::System && m_systemDark);
}

void Appearance::readAll(const QDBusConnection& bus) {
  qDBusRegisterMetaType<Groups>();
  auto call = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("ReadAll"));
  call << QStringList{kAppearanceGroup, kDesktopGroup};
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
    finished->deleteLater();
    const QDBusPendingReply<Groups> reply = *finished;
    if (reply.isError()) return;  // no portal: the defaults stand
    const Groups groups = reply.value();
    for (auto group = groups.begin(); group != groups.end(); ++group) {
      for (auto entry = group->begin(); entry != group->end(); ++entry) apply(group.key(), entry.key(), entry.value());
    }
  });
}

void Appearance::onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  apply(group, key, value.variant());
}

void Appearance::apply(const QString& group, const QString& key, const QVariant& value) {
  if (group == kAppearanceGroup && key == QLatin1String("color-scheme")) {
    m_systemDark = value.toUInt() == kPrefersDark;
  } else if (group == kAppearanceGroup && key == QLatin1String("contrast")) {
    m_highContrast = value.toUInt() == kPrefersHighContrast;
  } else if (group == kDesktopGroup && key == QLatin1String("enable-animations")) {
    m_reducedMotion = !value.toBool();
  } else if (group == kDesktopGroup && key == QLatin1String("text-scaling-factor")) {
    m_textScale = std::clamp(value.toDouble(), 0.5, 3.0);
  } else {
    return;
  }
  emit changed();
}

}  // namespace varnel::ui
