// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// A button that shows when its answer is on its way. Return does nothing here: a line end typed too much must never
/// decide.
Button {
    id: root

    property bool busy: false

    Keys.onReturnPressed: event => event.accepted = true
    Keys.onEnterPressed: event => event.accepted = true

    Spinner {
        anchors.left: parent.left
        anchors.leftMargin: Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        visible: root.busy
        running: visible
        color: root.highlighted ? Theme.accentText : Theme.secondary
    }
}
