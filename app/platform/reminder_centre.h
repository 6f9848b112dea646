// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <string>
#include <vector>

namespace varnel::platform {

/// A notification to come.
struct Reminder {
  std::string id;
  std::string title;
  std::string body;
  double at = 0;  ///< seconds since 1970; shown at that second of the local clock

  bool operator==(const Reminder&) const = default;
};

enum class ReminderAuthorisation { NotDetermined, Denied, Authorised };

/// Shows notifications at a moment, also when the application does not run then. Main thread.
class ReminderCentre {
 public:
  virtual ~ReminderCentre() = default;

  /// Forgets what was to come under these ids.
  virtual void remove(const std::vector<std::string>& ids) = 0;
  virtual QCoro::Task<ReminderAuthorisation> authorisation() = 0;
  /// Asks the user; true when granted.
  virtual QCoro::Task<bool> requestAuthorisation() = 0;
  /// In the place of what was to come under that id. False when it was not taken.
  virtual QCoro::Task<bool> add(Reminder reminder) = 0;
};

}  // namespace varnel::platform
