// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtQuick/QQuickItem>

namespace varnel::ui {

/// Assistive tools read the items of a list in the order in which they were made, and a list that is scrolled up makes
/// the upper ones last. A delegate that puts itself in its place is read there.
class ReadingOrder : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  using QObject::QObject;

  /// Behind the one item or, failing that, in front of the other; either may be null.
  Q_INVOKABLE static void place(QQuickItem* item, QQuickItem* former, QQuickItem* next);
  /// In front of everything in its parent.
  Q_INVOKABLE static void placeFirst(QQuickItem* item);
};

}  // namespace varnel::ui
