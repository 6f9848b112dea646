// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/appearance.h"

#include <gtest/gtest.h>

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>

#include "tests/support/waiting.h"

using Groups = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(Groups)

namespace varnel::ui {
namespace {

using support::spinFor;
using support::spinUntil;
using namespace std::chrono_literals;

const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");

/// The portal of a desktop, as far as its settings go.
class SettingsPortal : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  SettingsPortal() {
    qDBusRegisterMetaType<Groups>();
    m_bus.registerObject(kPath, this, QDBusConnection::ExportAllSlots);
    m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }
  ~SettingsPortal() override {
    m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
    m_bus.unregisterObject(kPath);
  }

  void change(const QString& group, const QString& key, const QVariant& value) {
    settings[group][key] = value;
    auto signal = QDBusMessage::createSignal(kPath, kInterface, QStringLiteral("SettingChanged"));
    signal << group << key << QVariant::fromValue(QDBusVariant(value));
    m_bus.send(signal);
  }

  Groups settings;

 public slots:
  Groups ReadAll(const QStringList&) { return settings; }

 private:
  QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
};

const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kDesktop = QStringLiteral("org.gnome.desktop.interface");
const QString kScheme = QStringLiteral("color-scheme");

TEST(Appearance, FollowsThePortalFromTheStartAndLive) {
  SettingsPortal portal;
  portal.settings[kAppearance][kScheme] = 1U;
  portal.settings[kDesktop][QStringLiteral("enable-animations")] = false;
  portal.settings[kDesktop][QStringLiteral("text-scaling-factor")] = 2.0;
  const Appearance appearance(ColorScheme::System, QDBusConnection::sessionBus());
  ASSERT_TRUE(spinUntil([&] { return appearance.dark() && appearance.reducedMotion() && appearance.textScale() > 1; }));
  EXPECT_EQ(appearance.textScale(), 2.0);
  EXPECT_FALSE(appearance.highContrast());

  portal.change(kAppearance, kScheme, 2U);
  EXPECT_TRUE(spinUntil([&] { return !appearance.dark(); })) << "2 prefers light";
  portal.change(kAppearance, QStringLiteral("contrast"), 1U);
  EXPECT_TRUE(spinUntil([&] { return appearance.highContrast(); }));
  portal.change(kDesktop, QStringLiteral("text-scaling-factor"), 90.0);
  EXPECT_TRUE(spinUntil([&] { return appearance.textScale() == 3.0; })) << "kept within what the screens can show";
}

TEST(Appearance, AChosenSchemeOverrulesThePortalButNotTheRest) {
  SettingsPortal portal;
  portal.settings[kAppearance][kScheme] = 1U;
  portal.settings[kAppearance][QStringLiteral("contrast")] = 1U;
  const Appearance light(ColorScheme::Light, QDBusConnection::sessionBus());
  ASSERT_TRUE(spinUntil([&] { return light.highContrast(); }));
  EXPECT_FALSE(light.dark());
}

TEST(Appearance, WithoutAPortalTheDefaultsStand) {
  const Appearance system(ColorScheme::System, QDBusConnection::sessionBus());
  const Appearance dark(ColorScheme::Dark, QDBusConnection(QStringLiteral("not connected")));
  spinFor(100ms);
  EXPECT_FALSE(system.dark());
  EXPECT_EQ(system.textScale(), 1.0);
  EXPECT_TRUE(dark.dark());
}

TEST(Appearance, SchemesHaveThreeNames) {
  EXPECT_EQ(colorSchemeNamed(QStringLiteral("dark")), ColorScheme::Dark);
  EXPECT_EQ(colorSchemeNamed(QStringLiteral("system")), ColorScheme::System);
  EXPECT_EQ(colorSchemeNamed(QStringLiteral("Dark")), std::nullopt);
}

}  // namespace
}  // namespace varnel::ui

#include "appearance_test.moc"
