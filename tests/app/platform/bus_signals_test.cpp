// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

#include "app/platform/connectivity_watch_system.h"
#include "app/platform/haptics_feedbackd.h"
#include "tests/support/waiting.h"

namespace varnel::platform {
namespace {

using support::spinUntil;

/// A service on the session bus, for as long as it lives.
class Service : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.sigxcpu.Feedback")

 public:
  Service(const QString& name, const QString& path) : m_name(name), m_path(path) {
    bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
    bus.registerService(name);
  }
  ~Service() override {
    bus.unregisterObject(m_path);
    bus.unregisterService(m_name);
  }

  QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("service"));
  QStringList triggered;

 public slots:
  // NOLINTNEXTLINE(readability-identifier-naming): the interface's name
  uint TriggerFeedback(const QString& app, const QString& event, const QVariantMap&, int timeout) {
    triggered << QStringLiteral("%1 %2 %3").arg(app, event).arg(timeout);
    return 1;
  }

 private:
  QString m_name;
  QString m_path;
};

TEST(Haptics, GoThroughTheFeedbackDaemon) {
  const Service daemon(QStringLiteral("org.sigxcpu.Feedback"), QStringLiteral("/org/sigxcpu/Feedback"));
  FeedbackdHaptics haptics(QDBusConnection::sessionBus());
  for (const HapticSignal signal : {HapticSignal::Success, HapticSignal::Warning, HapticSignal::Error}) {
    haptics.notificationOccurred(signal);
  }
  ASSERT_TRUE(spinUntil([&] { return daemon.triggered.size() == 3; }));
  EXPECT_EQ(daemon.triggered, (QStringList{QStringLiteral("org.varnel.Varnel timeout-completed -1"),
                                           QStringLiteral("org.varnel.Varnel message-new-instant -1"),
                                           QStringLiteral("org.varnel.Varnel bell-terminal -1")}));
}

TEST(Haptics, AreNoneWithoutTheDaemonOrABus) {
  FeedbackdHaptics(QDBusConnection::sessionBus()).notificationOccurred(HapticSignal::Error);
  FeedbackdHaptics(QDBusConnection(QStringLiteral("not connected"))).notificationOccurred(HapticSignal::Error);
}

TEST(ConnectivityWatch, TellsOfWakingUpAndNotOfGoingToSleep) {
  const QString path = QStringLiteral("/org/freedesktop/login1");
  Service logind(QStringLiteral("org.freedesktop.login1"), path);
  const SystemConnectivityWatch watch(QDBusConnection::sessionBus());
  int resumed = 0;
  QObject::connect(&watch, &ConnectivityWatch::resumed, [&] { ++resumed; });
  for (const bool isStarting : {true, false, true, false}) {
    auto signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.login1.Manager"),
                                             QStringLiteral("PrepareForSleep"));
    signal << isStarting;
    logind.bus.send(signal);
  }
  EXPECT_TRUE(spinUntil([&] { return resumed == 2; }));
  support::spinFor(std::chrono::milliseconds(50));
  EXPECT_EQ(resumed, 2);
}

}  // namespace
}  // namespace varnel::platform

#include "bus_signals_test.moc"
