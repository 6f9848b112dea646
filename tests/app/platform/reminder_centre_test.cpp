// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDateTime>
#include <fstream>
#include <memory>

#include "app/platform/reminder_centre_system.h"
#include "tests/support/fake_platform.h"
#include "tests/support/notification_server.h"
#include "tests/support/systemd_manager.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/waiting.h"

namespace varnel::platform {
namespace {

using support::await;
using support::spinUntil;

constexpr double kHour = 3600;
const std::vector<std::string> kIds{"varnel-usage-reset-primary", "varnel-usage-reset-secondary"};

class ReminderCentreTest : public ::testing::Test {
 protected:
  /// The application is started anew, with what it kept.
  void start() {
    centre.reset();
    centre = std::make_unique<SystemReminderCentre>(
        SystemReminderCentre::Surroundings{.store = store,
                                           .notifications = notifications,
                                           .bus = QDBusConnection::sessionBus(),
                                           .unitDirectory = units.path() / "systemd" / "user",
                                           .program = "/opt/my apps/100%/varnel-app",
                                           .now = [this] { return now; }});
  }
  [[nodiscard]] Reminder reminder(double at, const std::string& body = "back") const {
    return {.id = kIds[0], .title = "Reset", .body = body, .at = at};
  }
  [[nodiscard]] std::string unit(const std::string& name) const {
    std::ifstream file(units.path() / "systemd" / "user" / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] bool hasUnits() const {
    return !unit(kIds[0] + ".timer").empty() || !unit(kIds[0] + ".service").empty();
  }

  double now = 1'900'000'000;
  testing::TemporaryDirectory units;
  support::MemoryDefaultsStore store;
  support::FakeNotificationCentre notifications;
  std::unique_ptr<support::SystemdManager> systemd;
  std::unique_ptr<SystemReminderCentre> centre;
};

TEST_F(ReminderCentreTest, GivesTheReminderToTheUsersManager) {
  systemd = std::make_unique<support::SystemdManager>();
  start();
  EXPECT_TRUE(await(centre->add(reminder(now + 60.75))));
  EXPECT_EQ(systemd->log,
            (QStringList{QStringLiteral("Reload"), QStringLiteral("EnableUnitFiles varnel-usage-reset-primary.timer"),
                         QStringLiteral("RestartUnit varnel-usage-reset-primary.timer")}));
  const std::string timer = unit(kIds[0] + ".timer");
  const QString moment = QDateTime::fromSecsSinceEpoch(1'900'000'060).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
  EXPECT_NE(timer.find("\nOnCalendar=" + moment.toStdString() + "\n"), std::string::npos) << timer;
  EXPECT_NE(timer.find("\nPersistent=true\n"), std::string::npos);
  EXPECT_NE(unit(kIds[0] + ".service")
                .find("\nExecStart=\"/opt/my apps/100%%/varnel-app\" --notify \"varnel-usage-reset-primary\"\n"),
            std::string::npos);

  now += 2 * kHour;
  centre->check();
  start();
  EXPECT_TRUE(notifications.log.empty()) << "the manager shows it, not the application";
}

TEST_F(ReminderCentreTest, TakesItBackByItsId) {
  systemd = std::make_unique<support::SystemdManager>();
  start();
  await(centre->add(reminder(now + 60)));
  systemd->log.clear();
  centre->remove(kIds);
  ASSERT_TRUE(spinUntil([&] { return systemd->log.size() == 2; }));
  EXPECT_EQ(systemd->log,
            (QStringList{QStringLiteral("StopUnit varnel-usage-reset-primary.timer"), QStringLiteral("Reload")}));
  EXPECT_FALSE(hasUnits());
  centre->remove(kIds);
  start();
  EXPECT_EQ(systemd->log.size(), 2);
}

TEST_F(ReminderCentreTest, LeavesTheManagerAloneWhileARefreshChangesNothing) {
  systemd = std::make_unique<support::SystemdManager>();
  start();
  await(centre->add(reminder(now + 60)));
  systemd->log.clear();
  const int writes = store.writes;
  centre->remove(kIds);
  EXPECT_TRUE(await(centre->add(reminder(now + 60))));
  support::spinFor(std::chrono::milliseconds(700));
  EXPECT_TRUE(systemd->log.isEmpty());
  EXPECT_EQ(store.writes, writes);

  centre->remove(kIds);
  EXPECT_TRUE(await(centre->add(reminder(now + 90))));
  EXPECT_EQ(systemd->log.size(), 3) << "another moment";
  centre->remove(kIds);
  centre.reset();
  EXPECT_FALSE(hasUnits()) << "an end does not undo a removal";
}

TEST_F(ReminderCentreTest, ShowsItItselfWhenNoManagerTakesIt) {
  for (const char* refused : {"", "Reload", "EnableUnitFiles", "RestartUnit"}) {
    systemd.reset();
    if (*refused != '\0') systemd = std::make_unique<support::SystemdManager>();
    if (systemd) systemd->refused = QLatin1String(refused);
    start();
    EXPECT_TRUE(await(centre->add(reminder(now + 60, refused)))) << refused;
    EXPECT_FALSE(hasUnits()) << refused;
    now += 59;
    centre->check();
    EXPECT_TRUE(notifications.shown.empty());
    now += 1;
    centre->check();
    ASSERT_EQ(notifications.shown.count(kIds[0]), 1U) << refused;
    EXPECT_EQ(notifications.shown.at(kIds[0]), (Notification{.title = "Reset", .body = refused, .sound = true}));
    notifications.shown.clear();
    start();
    EXPECT_TRUE(notifications.shown.empty()) << "once";
  }
}

TEST_F(ReminderCentreTest, ShowsItByItselfAtTheMoment) {
  start();
  await(centre->add(reminder(now + 0.05)));
  now += 0.05;
  EXPECT_TRUE(spinUntil([&] { return !notifications.shown.empty(); }));
}

TEST_F(ReminderCentreTest, MakesUpAtTheNextStartForWhatWasMissedByLessThanAnHour) {
  for (const double late : {0.0, kHour - 1, kHour, kHour + 1}) {
    start();
    await(centre->add(reminder(now + 60)));
    centre.reset();
    now += 60 + late;
    start();
    EXPECT_EQ(notifications.shown.size(), late < kHour ? 1U : 0U) << late;
    notifications.shown.clear();
  }
}

TEST_F(ReminderCentreTest, ShowsNothingThatWasRemovedOrSwitchedOff) {
  start();
  await(centre->add(reminder(now + 60)));
  centre->remove(kIds);
  now += 60;
  centre->check();
  start();
  await(centre->add(reminder(now + 60)));
  store.values.insert_or_assign("Varnel.UsageResetReminders", false);
  now += 60;
  centre->check();
  EXPECT_TRUE(notifications.log.empty());
}

TEST_F(ReminderCentreTest, IsAuthorisedWhileItIsOnAndAServerAnswers) {
  start();
  EXPECT_EQ(await(centre->authorisation()), ReminderAuthorisation::Denied);
  const support::NotificationServer server;
  EXPECT_EQ(await(centre->authorisation()), ReminderAuthorisation::Authorised);
  store.values.insert_or_assign("Varnel.UsageResetReminders", false);
  EXPECT_EQ(await(centre->authorisation()), ReminderAuthorisation::Denied);
  store.values.insert_or_assign("Varnel.UsageResetReminders", true);
  EXPECT_EQ(await(centre->authorisation()), ReminderAuthorisation::Authorised);
}

TEST_F(ReminderCentreTest, LetsTheLaterOfTwoCallsHold) {
  systemd = std::make_unique<support::SystemdManager>();
  start();
  auto first = centre->add(reminder(now + 60));
  centre->remove(kIds);
  auto second = centre->add(reminder(now + 120));
  EXPECT_FALSE(await(std::move(first)));
  EXPECT_TRUE(await(std::move(second)));
  const QString moment = QDateTime::fromSecsSinceEpoch(1'900'000'120).toString(QStringLiteral("HH:mm:ss"));
  EXPECT_NE(unit(kIds[0] + ".timer").find(moment.toStdString()), std::string::npos);
}

TEST_F(ReminderCentreTest, RefusesAMomentThatNoCalendarHas) {
  start();
  EXPECT_FALSE(await(centre->add(reminder(std::numeric_limits<double>::infinity()))));
  EXPECT_TRUE(await(centre->add(reminder(1e18)))) << "kept by the application";
  EXPECT_FALSE(hasUnits());
}

TEST_F(ReminderCentreTest, MayGoWhileTheManagerIsAsked) {
  systemd = std::make_unique<support::SystemdManager>();
  start();
  auto added = centre->add(reminder(now + 60));
  centre.reset();
  EXPECT_FALSE(await(std::move(added)));
}

}  // namespace
}  // namespace varnel::platform
