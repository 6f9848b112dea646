// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <optional>
#include <string>
#include <vector>

namespace varnel::platform {

/// A notification as the application means it. Texts are plain: nothing in them is markup.
struct Notification {
  enum class Urgency { Low, Normal, Critical };

  std::string title;
  std::string body;
  Urgency urgency = Urgency::Normal;
  bool sound = false;     ///< the system's own for what is new
  bool resident = false;  ///< stays when it was touched, until it is removed
  std::string link;       ///< what touching it opens; empty for nothing

  bool operator==(const Notification&) const = default;
};

/// What the server of this desktop can do with a notification.
struct NotificationCapabilities {
  bool body = false;
  bool actions = false;
  bool persistence = false;  ///< keeps notifications until someone has seen them
  bool operator==(const NotificationCapabilities&) const = default;
};

/// Where this device shows notifications. The application names each by an id of its own choosing, which holds across
/// runs: what an earlier run posted can be replaced and removed. Main thread; no call waits. What cannot be shown for
/// want of a server is shown when there is one.
class NotificationCentre : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// Shows the notification in the place of the one of that id, if there is one.
  virtual void post(const std::string& id, const Notification& notification) = 0;
  virtual void remove(const std::string& id) = 0;
  /// Nothing while no server answers.
  [[nodiscard]] virtual std::optional<NotificationCapabilities> capabilities() const = 0;
  /// The ids that stand, those of earlier runs included, as far as this device tells.
  [[nodiscard]] virtual std::vector<std::string> posted() const = 0;

 signals:
  /// Someone touched a notification, perhaps one of an earlier run.
  void opened(const std::string& link);
  /// Someone put the notification away.
  void dismissed(const std::string& id);
  void capabilitiesChanged();
};

}  // namespace varnel::platform
