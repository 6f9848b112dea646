// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/desktop_application.h"

#include <gtest/gtest.h>

#include <QtCore/QThreadPool>
#include <atomic>
#include <optional>

#include "tests/support/waiting.h"

namespace varnel::platform {
namespace {

using support::spinUntil;

const QString kId = QStringLiteral("org.varnel.Test");

QDBusConnection connection(const char* name) {
  return QDBusConnection::connectToBus(QDBusConnection::SessionBus, QLatin1String(name));
}

/// A second instance, on a thread of its own as it waits for the first one.
DesktopApplication::Instance joinSecond(const QStringList& links) {
  std::atomic<int> instance = -1;
  QThreadPool::globalInstance()->start([&] {
    {
      DesktopApplication second(connection("second"), kId);
      instance = static_cast<int>(second.join(links));
    }
    QDBusConnection::disconnectFromBus(QStringLiteral("second"));
  });
  EXPECT_TRUE(spinUntil([&] { return instance >= 0; }));
  QThreadPool::globalInstance()->waitForDone();
  return static_cast<DesktopApplication::Instance>(instance.load());
}

TEST(DesktopApplication, TheSecondInstanceHandsItsLinksToTheFirst) {
  DesktopApplication first(connection("first"), kId);
  int activations = 0;
  QStringList links;
  QObject::connect(&first, &DesktopApplication::activated, &first, [&] { ++activations; });
  QObject::connect(&first, &DesktopApplication::linkOpened, &first, [&](const QString& link) { links << link; });
  ASSERT_EQ(first.join({}), DesktopApplication::Instance::First);

  const QStringList wanted{QStringLiteral("varnel://session/a%20b"), QStringLiteral("Varnel://x")};
  EXPECT_EQ(joinSecond(wanted), DesktopApplication::Instance::Second);
  EXPECT_EQ(links, wanted) << "as they are: the model judges them";
  EXPECT_EQ(activations, 0);
  EXPECT_EQ(joinSecond({}), DesktopApplication::Instance::Second);
  EXPECT_EQ(activations, 1);
}

TEST(DesktopApplication, WithoutABusNobodyCanReachIt) {
  DesktopApplication alone(QDBusConnection(QStringLiteral("none")), kId);
  EXPECT_EQ(alone.join({QStringLiteral("varnel://session/a")}), DesktopApplication::Instance::Unreachable);
}

}  // namespace
}  // namespace varnel::platform
