// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <memory>

#include "app/platform/notification_centre_dbus.h"
#include "tests/support/fake_platform.h"
#include "tests/support/notification_server.h"
#include "tests/support/waiting.h"

namespace varnel::platform {
namespace {

using support::NotificationServer;
using support::spinUntil;

Notification titled(const std::string& title) {
  return {.title = title, .link = "link " + title};
}

class NotificationCentreTest : public ::testing::Test {
 protected:
  /// The application is started anew, with what it kept.
  void start() {
    centre.reset();
    centre = std::make_unique<DBusNotificationCentre>(QDBusConnection::sessionBus(), store);
    QObject::connect(centre.get(), &NotificationCentre::opened,
                     [this](const std::string& link) { heard.push_back("open " + link); });
    QObject::connect(centre.get(), &NotificationCentre::dismissed,
                     [this](const std::string& id) { heard.push_back(id + " dismissed"); });
  }
  void startAndMeet() {
    start();
    ASSERT_TRUE(spinUntil([&] { return centre->capabilities().has_value(); }));
  }
  /// Waits until the centre has kept the numbers of so many notifications.
  bool keeps(std::size_t count) {
    return spinUntil(
        [&] { return store.get<Dictionary>("Varnel.PostedNotifications").value_or(Dictionary()).size() == count + 1; });
  }
  bool logs(const QStringList& lines) {
    return spinUntil([&] { return server->log.size() >= lines.size(); }) && server->log == lines;
  }

  std::unique_ptr<NotificationServer> server = std::make_unique<NotificationServer>();
  support::MemoryDefaultsStore store;
  std::unique_ptr<DBusNotificationCentre> centre;
  std::vector<std::string> heard;
};

TEST_F(NotificationCentreTest, SaysWhatIsMeantInTheWordsOfTheServer) {
  startAndMeet();
  EXPECT_EQ(centre->capabilities(), (NotificationCapabilities{.body = true, .actions = true, .persistence = true}));
  centre->post("loud", {.title = "<b>T</b>",
                        .body = "a <b>& b",
                        .urgency = Notification::Urgency::Critical,
                        .sound = true,
                        .link = "varnel://session/a"});
  centre->post("quiet", {.title = "Q", .urgency = Notification::Urgency::Low});
  ASSERT_TRUE(spinUntil([&] { return server->shown.size() == 2; }));
  const auto& loud = server->shown.at(41);
  EXPECT_EQ(loud.title, QStringLiteral("<b>T</b>"));
  EXPECT_EQ(loud.body, QStringLiteral("a <b>& b")) << "this server knows no markup";
  EXPECT_EQ(loud.actions, (QStringList{QStringLiteral("default"), QStringLiteral("Open")}));
  EXPECT_EQ(loud.hints.value(QStringLiteral("urgency")).value<uchar>(), 2);
  EXPECT_EQ(loud.hints.value(QStringLiteral("desktop-entry")).toString(), QStringLiteral("org.varnel.Varnel"));
  EXPECT_TRUE(loud.hints.contains(QStringLiteral("sound-name")));
  EXPECT_EQ(loud.timeout, 0) << "stays until it is seen";
  const auto& quiet = server->shown.at(42);
  EXPECT_EQ(quiet.hints.value(QStringLiteral("urgency")).value<uchar>(), 0);
  EXPECT_TRUE(quiet.hints.value(QStringLiteral("suppress-sound")).toBool());
  EXPECT_EQ(quiet.timeout, -1);
}

TEST_F(NotificationCentreTest, EscapesTheBodyForAServerThatReadsMarkup) {
  server.reset();
  server = std::make_unique<NotificationServer>(QStringList{QStringLiteral("body"), QStringLiteral("body-markup")});
  startAndMeet();
  centre->post("a", {.title = "T", .body = "<img src=\"x\">"});
  ASSERT_TRUE(spinUntil([&] { return server->shown.size() == 1; }));
  EXPECT_EQ(server->shown.at(41).body, QStringLiteral("&lt;img src=&quot;x&quot;&gt;"));
}

TEST_F(NotificationCentreTest, ReplacesInPlaceHoweverFastItIsTold) {
  startAndMeet();
  for (const char* title : {"1", "2", "3"}) centre->post("a", titled(title));
  EXPECT_TRUE(logs({QStringLiteral("show 41 1"), QStringLiteral("replace 41 3")}))
      << server->log.join(',').toStdString();
  centre->post("b", titled("4"));
  centre->remove("b");
  centre->remove("unknown");
  EXPECT_TRUE(logs({QStringLiteral("show 41 1"), QStringLiteral("replace 41 3"), QStringLiteral("show 42 4"),
                    QStringLiteral("close 42")}));
  EXPECT_EQ(centre->posted(), std::vector<std::string>{"a"});
}

TEST_F(NotificationCentreTest, TellsWhatAPersonDoesUnderItsOwnNames) {
  startAndMeet();
  centre->post("a", titled("A"));
  centre->post("b", titled("B"));
  ASSERT_TRUE(keeps(2));
  server->touch(77, QStringLiteral("default"));
  server->touch(42, QStringLiteral("another"));
  server->touch(42, QStringLiteral("default"));
  server->dismiss(41);
  ASSERT_TRUE(spinUntil([&] { return heard.size() == 2; }));
  EXPECT_EQ(heard, (std::vector<std::string>{"open link B", "a dismissed"}));
  EXPECT_EQ(centre->posted(), std::vector<std::string>{"b"});
}

TEST_F(NotificationCentreTest, KnowsInTheNextRunWhatItPosted) {
  startAndMeet();
  for (const char* id : {"a", "b", "c"}) centre->post(id, titled(id));
  ASSERT_TRUE(keeps(3));
  server->log.clear();
  start();
  centre->remove("a");
  centre->post("b", titled("again"));
  EXPECT_TRUE(logs({QStringLiteral("close 41"), QStringLiteral("replace 42 again")}))
      << server->log.join(',').toStdString();
  EXPECT_EQ(centre->posted(), (std::vector<std::string>{"b", "c"}));
  server->touch(42, QStringLiteral("default"));
  server->touch(43, QStringLiteral("default"));
  ASSERT_TRUE(spinUntil([&] { return heard.size() == 2; }));
  EXPECT_EQ(heard, (std::vector<std::string>{"open link again", "open link c"}));
}

TEST_F(NotificationCentreTest, TouchesNothingOfAnotherServerAndShowsItWhatStands) {
  startAndMeet();
  centre->post("a", titled("A"));
  ASSERT_TRUE(keeps(1));
  server.reset();
  ASSERT_TRUE(spinUntil([&] { return !centre->capabilities(); }));
  centre->post("b", titled("B"));
  server = std::make_unique<NotificationServer>();
  EXPECT_TRUE(logs({QStringLiteral("show 41 A"), QStringLiteral("show 42 B")})) << server->log.join(',').toStdString();

  server.reset();
  server = std::make_unique<NotificationServer>();
  startAndMeet();
  centre->remove("a");
  centre->post("b", titled("B"));
  EXPECT_TRUE(logs({QStringLiteral("show 41 B")})) << server->log.join(',').toStdString();
}

TEST_F(NotificationCentreTest, WaitsForAServerAndDropsWhatIsRemovedMeanwhile) {
  server.reset();
  start();
  centre->post("a", titled("A"));
  centre->post("b", titled("B"));
  centre->remove("a");
  support::spinFor(std::chrono::milliseconds(50));
  EXPECT_EQ(centre->capabilities(), std::nullopt);
  server = std::make_unique<NotificationServer>();
  EXPECT_TRUE(logs({QStringLiteral("show 41 B")})) << server->log.join(',').toStdString();
  EXPECT_EQ(centre->posted(), std::vector<std::string>{"b"});
}

TEST_F(NotificationCentreTest, MayGoAtAnyMoment) {
  start();
  centre.reset();
  startAndMeet();
  centre->post("a", titled("A"));
  centre.reset();
  EXPECT_TRUE(logs({QStringLiteral("show 41 A")}));
}

}  // namespace
}  // namespace varnel::platform
