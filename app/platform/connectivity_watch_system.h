// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtDBus/QDBusConnection>
#include <optional>

#include "app/platform/connectivity_watch.h"

namespace varnel::platform {

/// Hears of networks from the system's network service and of sleep from logind. Where one of them is missing, that
/// signal never comes.
class SystemConnectivityWatch : public ConnectivityWatch {
  Q_OBJECT

 public:
  /// `bus` is the system bus.
  explicit SystemConnectivityWatch(QDBusConnection bus, QObject* parent = nullptr);

 private slots:
  void onPrepareForSleep(bool isStarting);

 private:
  void watchNetwork();
};

}  // namespace varnel::platform
