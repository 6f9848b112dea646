// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace varnel::ui {

/// The symbols by name, each one glyph of the icon font that is built into the application. An unknown name gives a
/// question mark in a circle, so that a mistake is seen.
class Symbols : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  Q_PROPERTY(QString family READ family CONSTANT)

 public:
  explicit Symbols(QObject* parent = nullptr);

  /// The family of the icon font; loaded at the first use.
  [[nodiscard]] QString family() const;
  [[nodiscard]] Q_INVOKABLE static QString glyph(const QString& name);
  [[nodiscard]] static QStringList names();
};

}  // namespace varnel::ui
