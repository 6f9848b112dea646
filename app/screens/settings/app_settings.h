// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <array>
#include <memory>
#include <string_view>

#include "app/platform/defaults_store.h"

namespace varnel::screens {

/// What the user set for this application, kept on this device across pairings. What was never set has its default:
/// everything on, the system's look and language.
class AppSettings : public QObject {
  Q_OBJECT

 public:
  /// Keys of values that are on or off.
  static constexpr std::string_view kNotifyNeedsInput = "Varnel.NotifyNeedsInput";
  static constexpr std::string_view kNotifyFailed = "Varnel.NotifyFailed";
  static constexpr std::string_view kNotifyDone = "Varnel.NotifyDone";
  static constexpr std::string_view kNotifyUsageReset = "Varnel.UsageResetReminders";
  static constexpr std::string_view kKeepRunning = "Varnel.KeepRunning";
  /// Keys of texts.
  static constexpr std::string_view kAppearance = "Varnel.Appearance";  ///< "system", "light" or "dark"
  static constexpr std::string_view kLanguage = "Varnel.Language";      ///< a locale's name, empty for the system's

  explicit AppSettings(std::shared_ptr<platform::DefaultsStore> defaults, QObject* parent = nullptr);

  [[nodiscard]] bool isOn(std::string_view key) const;
  void setOn(std::string_view key, bool on);
  [[nodiscard]] QString text(std::string_view key) const;
  void setText(std::string_view key, const QString& text);

 signals:
  void changed();

 private:
  std::shared_ptr<platform::DefaultsStore> m_defaults;
};

}  // namespace varnel::screens
