// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>

namespace varnel::ui {

/// What a row does when a finger that dragged it sideways lets go. Offsets are in pixels: positive to the right, which
/// bares the leading actions, negative to the left, which bares the trailing ones.
class Swipe : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  enum Outcome { Closed, LeadingOpen, LeadingFull, TrailingOpen, TrailingFull };
  Q_ENUM(Outcome)

  explicit Swipe(QObject* parent = nullptr) : QObject(parent) {}

  /// `leading` and `trailing` are the widths of the actions, 0 where there are none; a full swipe performs the first
  /// action of its edge, where that edge allows it.
  Q_INVOKABLE static varnel::ui::Swipe::Outcome outcome(double offset, double width, double leading, double trailing,
                                                        bool leadingFull, bool trailingFull);
  /// How far the row follows the finger: freely over its actions and, where a full swipe is allowed, over its whole
  /// width; a fifth of the way beyond the actions elsewhere.
  Q_INVOKABLE static double followed(double offset, double leading, double trailing, bool leadingFull,
                                     bool trailingFull);
};

}  // namespace varnel::ui
