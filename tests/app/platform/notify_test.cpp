// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QProcess>
#include <QStandardPaths>
#include <filesystem>

#include "app/platform/defaults_store_file.h"
#include "app/platform/reminder_centre_system.h"
#include "tests/support/fake_platform.h"
#include "tests/support/notification_server.h"
#include "tests/support/waiting.h"

// The application as the user's systemd starts it at the moment of a reminder.

namespace varnel::platform {
namespace {

using support::spinUntil;

/// The exit code of `varnel-app --notify ID`.
int notify(const QString& id) {
  QProcess app;
  app.setProcessChannelMode(QProcess::ForwardedChannels);
  app.start(qEnvironmentVariable("VARNEL_APP"), {QStringLiteral("--notify"), id});
  if (!spinUntil([&] { return app.state() == QProcess::NotRunning; })) return -1;
  return app.exitStatus() == QProcess::NormalExit ? app.exitCode() : -1;
}

TEST(Notify, ShowsAPendingReminderOnceWithoutADisplay) {
  const QString id = QStringLiteral("varnel-usage-reset-primary");
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  DefaultsFileStore store(std::filesystem::path(data.toStdString()) / "varnel-app" / "defaults");
  support::FakeNotificationCentre none;
  SystemReminderCentre centre({.store = store,
                               .notifications = none,
                               .bus = QDBusConnection::sessionBus(),
                               .unitDirectory = {},
                               .program = {},
                               .now = [] { return 1.0; }});
  ASSERT_TRUE(support::await(
      centre.add({.id = id.toStdString(), .title = "Codex usage reset", .body = "back to 100%.", .at = 2})));

  EXPECT_EQ(notify(id), 1) << "nothing shows notifications yet: systemd tries again";
  support::NotificationServer server;
  EXPECT_EQ(notify(id), 0);
  ASSERT_EQ(server.shown.size(), 1U);
  EXPECT_EQ(server.shown.at(41).title, QStringLiteral("Codex usage reset"));
  EXPECT_EQ(server.shown.at(41).body, QStringLiteral("back to 100%."));
  EXPECT_TRUE(server.shown.at(41).hints.contains(QStringLiteral("sound-name")));
  EXPECT_FALSE(server.shown.at(41).hints.contains(QStringLiteral("desktop-entry"))) << "it outlives its sender";
  EXPECT_EQ(notify(id), 0);
  EXPECT_EQ(server.shown.size(), 1U);
}

}  // namespace
}  // namespace varnel::platform
