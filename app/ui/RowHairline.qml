// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// What parts a row of a card from the one above it; the first has none.
Rectangle {
    x: Theme.cardPadding
    width: parent ? parent.width - x : 0
    height: 1
    visible: parent !== null && parent.y > 0
    color: Theme.hairline
}
