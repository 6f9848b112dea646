// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/connectivity_watch_system.h"

#include <QtNetwork/QNetworkInformation>

namespace varnel::platform {

SystemConnectivityWatch::SystemConnectivityWatch(QDBusConnection bus, QObject* parent) : ConnectivityWatch(parent) {
  bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
              QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
              SLOT(onPrepareForSleep(bool)));
  watchNetwork();
}

void SystemConnectivityWatch::watchNetwork() {
  using Feature = QNetworkInformation::Feature;
  if (!QNetworkInformation::loadBackendByFeatures(Feature::Reachability | Feature::TransportMedium) &&
      !QNetworkInformation::loadBackendByFeatures(Feature::Reachability)) {
    return;
  }
  QNetworkInformation* network = QNetworkInformation::instance();
  connect(network, &QNetworkInformation::reachabilityChanged, this, &ConnectivityWatch::networkChanged);
  connect(network, &QNetworkInformation::transportMediumChanged, this, &ConnectivityWatch::networkChanged);
}

void SystemConnectivityWatch::onPrepareForSleep(bool isStarting) {
  if (!isStarting) emit resumed();
}

}  // namespace varnel::platform
