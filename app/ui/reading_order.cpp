// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/reading_order.h"

namespace varnel::ui {
namespace {

bool areSiblings(const QQuickItem* item, const QQuickItem* other) {
  return item != nullptr && other != nullptr && item != other && item->parentItem() != nullptr &&
         item->parentItem() == other->parentItem();
}

}  // namespace

void ReadingOrder::place(QQuickItem* item, QQuickItem* former, QQuickItem* next) {
  if (areSiblings(item, former)) {
    item->stackAfter(former);
  } else if (areSiblings(item, next)) {
    item->stackBefore(next);
  }
}

void ReadingOrder::placeFirst(QQuickItem* item) {
  if (item == nullptr || item->parentItem() == nullptr) return;
  QQuickItem* first = item->parentItem()->childItems().constFirst();
  if (areSiblings(item, first)) item->stackBefore(first);
}

}  // namespace varnel::ui
