// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <functional>

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// Whether the bridge is reached, in words, and what can be done when it is not.
class ConnectionState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString text READ text NOTIFY changed)
  Q_PROPERTY(QString tone READ tone NOTIFY changed)
  Q_PROPERTY(QString lastContact READ lastContact NOTIFY changed)
  Q_PROPERTY(QString notice READ notice NOTIFY changed)
  Q_PROPERTY(bool refused READ isRefused NOTIFY changed)

 public:
  /// `now` gives seconds since 1970.
  ConnectionState(model::AppModel& model, std::function<double()> now, QObject* parent = nullptr);

  [[nodiscard]] QString text() const;
  [[nodiscard]] QString tone() const;
  [[nodiscard]] QString lastContact() const;
  /// Why nothing comes, once that has lasted: a token that is refused, or half a minute without contact. Else empty.
  [[nodiscard]] QString notice() const;
  /// The bridge no longer knows this device; only a new pairing helps.
  [[nodiscard]] bool isRefused() const;

  /// Drops the connection and begins anew, without the pause that a failure has earned.
  Q_INVOKABLE void reconnect();
  Q_INVOKABLE void forgetPairing();

 signals:
  void changed();

 private:
  model::AppModel& m_model;
  std::function<double()> m_now;
  double m_madeAt;
  QTimer m_tick;  ///< times grow old without any event
};

}  // namespace varnel::screens
