// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace varnel::platform {

/// Tells when an open connection may be dead without anyone having closed it. Main thread.
class ConnectivityWatch : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

 signals:
  /// Another network, or a network again.
  void networkChanged();
  /// The device woke up.
  void resumed();
};

}  // namespace varnel::platform
