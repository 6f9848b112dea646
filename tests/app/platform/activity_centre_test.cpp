// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <memory>

#include "app/platform/activity_centre_notifications.h"
#include "app/platform/notification_centre_dbus.h"
#include "tests/support/fake_platform.h"
#include "tests/support/notification_server.h"
#include "tests/support/waiting.h"

namespace varnel::platform {
namespace {

using support::spinUntil;
using wire::CodexTurnState;

const wire::CodexTurnAttributes kTurn{.sessionId = "s/1", .turnId = "t", .project = "project"};

class ActivityCentreTest : public ::testing::Test {
 protected:
  void start() {
    centre.reset();
    notifications = std::make_unique<DBusNotificationCentre>(QDBusConnection::sessionBus(), store);
    centre = std::make_unique<NotificationActivityCentre>(*notifications, store, [this] { return now; });
    ASSERT_TRUE(spinUntil([&] { return notifications->capabilities().has_value(); }));
  }
  [[nodiscard]] Activity::Content content(const std::string& message) const {
    return {.state = {.state = CodexTurnState::Working, .message = message, .updatedAt = now, .sequence = 1},
            .staleDate = now + 900};
  }
  bool shows(const QString& firstLine) {
    return spinUntil([&] {
      return server.shown.size() == 1 &&
             server.shown.begin()->second.body.section(QLatin1Char('\n'), 0, 0) == firstLine;
    });
  }
  bool showsOutdated() {
    return spinUntil([&] { return server.shown.begin()->second.body.endsWith(QLatin1String(", no news since")); });
  }

  double now = 1'900'000'000;
  support::NotificationServer server;
  support::MemoryDefaultsStore store;
  std::unique_ptr<DBusNotificationCentre> notifications;
  std::unique_ptr<NotificationActivityCentre> centre;
};

TEST_F(ActivityCentreTest, ShowsOneNotificationThatChangesInPlace) {
  start();
  const auto activity = centre->request(kTurn, content("first"));
  ASSERT_TRUE(activity.has_value());
  ASSERT_TRUE(shows(QStringLiteral("first")));
  centre->update(activity->id, content("second"));
  ASSERT_TRUE(shows(QStringLiteral("second")));
  EXPECT_EQ(server.log,
            (QStringList{QStringLiteral("show 41 project: Working"), QStringLiteral("replace 41 project: Working")}));
  EXPECT_TRUE(server.shown.at(41).hints.value(QStringLiteral("resident")).toBool());
  EXPECT_TRUE(server.shown.at(41).hints.value(QStringLiteral("suppress-sound")).toBool());
  EXPECT_EQ(server.shown.at(41).timeout, 0);
  std::string link;
  QObject::connect(notifications.get(), &NotificationCentre::opened, [&](const std::string& opened) { link = opened; });
  server.touch(41, QStringLiteral("default"));
  EXPECT_TRUE(spinUntil([&] { return link == "varnel://session/s%2F1"; }));
  centre->end(activity->id, content("second"));
  EXPECT_TRUE(spinUntil([&] { return server.shown.empty(); }));
  EXPECT_TRUE(centre->activities().empty());
}

TEST_F(ActivityCentreTest, SaysWhenItHasHeardNothingForLong) {
  start();
  const auto activity = centre->request(kTurn, content("m"));
  ASSERT_TRUE(shows(QStringLiteral("m")));
  now += 899;
  centre->check();
  EXPECT_EQ(server.log.size(), 1);
  now += 1;
  centre->check();
  EXPECT_TRUE(showsOutdated());
  centre->check();
  centre->update(activity->id, content("n"));
  ASSERT_TRUE(shows(QStringLiteral("n")));
  EXPECT_EQ(server.log.size(), 3);
  EXPECT_FALSE(server.shown.at(41).body.contains(QLatin1String("no news")));
}

TEST_F(ActivityCentreTest, IsFoundByTheNextRunWithItsLastContent) {
  start();
  const auto first = centre->request(kTurn, content("1"));
  now -= 86400 * 365;  // the clock was set
  const auto second = centre->request({.sessionId = "s", .turnId = "u", .project = "p"}, content("2"));
  EXPECT_LT(first->id, second->id);
  ASSERT_TRUE(spinUntil([&] { return server.shown.size() == 2; }));
  centre->update(first->id, content("3"));
  ASSERT_TRUE(spinUntil([&] { return server.log.size() == 3; }));
  start();
  ASSERT_EQ(centre->activities().size(), 2U);
  EXPECT_EQ(centre->activities()[0], (Activity{.id = first->id, .attributes = kTurn, .content = content("3")}));
  centre->end(second->id, content("2"));
  EXPECT_TRUE(spinUntil([&] { return server.shown.size() == 1; })) << "one of the run before";
  now += 5000;
  centre->check();
  EXPECT_TRUE(showsOutdated());
}

TEST_F(ActivityCentreTest, IsGoneWhenItsUserPutsItAway) {
  start();
  const auto activity = centre->request(kTurn, content("m"));
  ASSERT_TRUE(shows(QStringLiteral("m")));
  ASSERT_TRUE(spinUntil([&] { return store.get<Dictionary>("Varnel.PostedNotifications").has_value(); }));
  server.dismiss(41);
  EXPECT_TRUE(spinUntil([&] { return centre->activities().empty(); }));
  centre->update(activity->id, content("n"));
  centre->end(activity->id, content("n"));
  support::spinFor(std::chrono::milliseconds(50));
  EXPECT_EQ(server.log.size(), 1);
}

TEST_F(ActivityCentreTest, IsEnabledByTheSettingAndTheServer) {
  start();
  EXPECT_TRUE(centre->areActivitiesEnabled());
  ASSERT_TRUE(store.set(kLiveActivitiesKey, false));
  EXPECT_FALSE(centre->areActivitiesEnabled());
  EXPECT_FALSE(centre->request(kTurn, content("m")).has_value());
  ASSERT_TRUE(store.set(kLiveActivitiesKey, true));
  support::FakeNotificationCentre absent;
  absent.server.reset();
  EXPECT_FALSE(NotificationActivityCentre(absent, store, [] { return 1.0; }).areActivitiesEnabled());
  absent.server = NotificationCapabilities{.body = false, .actions = true, .persistence = true};
  EXPECT_FALSE(NotificationActivityCentre(absent, store, [] { return 1.0; }).areActivitiesEnabled());
}

TEST_F(ActivityCentreTest, OverlooksARecordThatMakesNoSense) {
  ASSERT_TRUE(store.set("Varnel.Activities", Dictionary{{"a", ""}, {"b", "{}\n{}\n1"}, {"c", "x\ny"}}));
  start();
  EXPECT_TRUE(centre->activities().empty());
}

}  // namespace
}  // namespace varnel::platform
