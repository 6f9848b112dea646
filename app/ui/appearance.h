// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusVariant>
#include <optional>

namespace varnel::ui {

enum class ColorScheme { System, Light, Dark };

/// The scheme of that name ("system", "light", "dark"), or nothing.
std::optional<ColorScheme> colorSchemeNamed(const QString& name);

/// What the person set for the whole desktop: dark or light, contrast, motion, size of text. Read from the settings
/// portal on the given bus and followed live. Without a portal everything keeps its default: light, normal contrast,
/// motion on, text at 100 %. Lives on the main thread and never waits for the portal.
class Appearance : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(bool dark READ dark NOTIFY changed)
  Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed)
  Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)
  Q_PROPERTY(double textScale READ textScale NOTIFY changed)

 public:
  /// `scheme` other than System overrules the portal's light or dark; the other settings are followed all the same.
  Appearance(ColorScheme scheme, const QDBusConnection& bus, QObject* parent = nullptr);

  void setScheme(ColorScheme scheme);

  [[nodiscard]] bool dark() const;
  [[nodiscard]] bool highContrast() const { return m_highContrast; }
  [[nodiscard]] bool reducedMotion() const { return m_reducedMotion; }
  /// 1 is 100 %; kept between 0.5 and 3.
  [[nodiscard]] double textScale() const { return m_textScale; }

 signals:
  void changed();

 private slots:
  void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void readAll(const QDBusConnection& bus);
  void apply(const QString& group, const QString& key, const QVariant& value);

  ColorScheme m_scheme;
  bool m_systemDark = false;
  bool m_highContrast = false;
  bool m_reducedMotion = false;
  double m_textScale = 1;
};

}  // namespace varnel::ui
